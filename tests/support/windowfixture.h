// The DM's Display on a data folder of its own, for tests that work it as a user does.
#pragma once

#include <QApplication>
#include <QTest>
#include <QTimer>

#include "characters.h"
#include "encounter.h"
#include "flatdialog.h"
#include "mainwindow.h"
#include "monsters.h"
#include "testdata.h"
#include "windows.h"

class WindowFixture {
public:
    // The folder starts with one encounter: a load asks questions about an empty one.
    WindowFixture()
    {
        m_folder.write(QStringLiteral("Encounters/den.txt"),
                       QStringLiteral("name=Rat Den\nadventure=Sewers\ndescription=Squeaks.\n"
                                      "level=1\nxp=200\nRat=1,2\nalias#1=Old Whisker\n"));
    }
    // Reads what the test has put into the folder, and shows the window.
    void open()
    {
        m_window = std::make_unique<MainWindow>();
        m_folder.load();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    void close() { m_window.reset(); }

    TestDataFolder &folder() { return m_folder; }
    MainWindow &window() { return *m_window; }
    template <typename Widget>
    Widget *find(const QString &objectName) const
    {
        return m_window->findChild<Widget *>(objectName);
    }

    static Creature *character(const QString &name)
    {
        return theCharacters->ensureCharacter(name, false);
    }
    static Creature *monster(QString group, const QString &id)
    {
        return theMonsters->ensureTemplate(group, id, true);
    }

private:
    TestDataFolder m_folder;
    std::unique_ptr<MainWindow> m_window;
};

// Cancels whatever blocks the test.
inline void endMenuOrDialog()
{
    if (QWidget *modal = QApplication::activeModalWidget())
        modal->close();
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    if (activeFlatDialog())
        activeFlatDialog()->reject();
}

// Runs `work` as soon as a dialog's own event loop runs; the call that opens the dialog follows.
// A check that fails within leaves nothing open that the test would wait for.
template <typename Work>
void whenDialogRuns(Work work)
{
    QTimer::singleShot(0, qApp, [work] {
        work();
        if (QTest::currentTestFailed())
            endMenuOrDialog();
    });
}
