// The DM's Display on a data folder of its own, for tests that work it as a user does.
#pragma once

#include <QApplication>
#include <QTest>
#include <QTimer>

#include "characters.h"
#include "coreobjects.h"
#include "encounter.h"
#include "mainwindow.h"
#include "monsters.h"
#include "testdata.h"

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

// Runs `work` as soon as a dialog's own event loop runs; the call that opens the dialog follows.
template <typename Work>
void whenDialogRuns(Work work)
{
    QTimer::singleShot(0, qApp, std::move(work));
}
