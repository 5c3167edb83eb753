// The DM's Display over a data folder of its own, and ways of answering its dialogs. For programs
// that link the windows.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QSettings>
#include <QSpinBox>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <functional>

#include "appendevent.h"
#include "characters.h"
#include "creature.h"
#include "datafolder.h"
#include "event.h"
#include "flatdialog.h"
#include "initiativedialog.h"
#include "mainwindow.h"
#include "messagedialog.h"
#include "monsters.h"
#include "rosterevents.h"
#include "testdata.h"
#include "windows.h"

// Calls `check` in whatever event loop runs until it answers true: dialogs block the test, so the
// answer to one is laid ready before the command that opens it. Reading `wasAnswered` afterwards
// tells that the dialog came at all.
class Answer : public QObject {
public:
    explicit Answer(std::function<bool()> check) : m_check(std::move(check))
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            // Off first: the check itself may run an event loop.
            m_timer.stop();
            if (m_check())
                wasAnswered = true;
            else
                m_timer.start();
        });
        m_timer.start(1);
    }

    bool wasAnswered = false;

private:
    std::function<bool()> m_check;
    QTimer m_timer;
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

// Ends the next dialog inside the window, after `edit` had its way with it.
template <typename Dialog>
std::function<bool()> inFlatDialog(std::function<void(Dialog &)> edit)
{
    return [edit] {
        auto *dialog = dynamic_cast<Dialog *>(activeFlatDialog());
        if (!dialog || !dialog->isVisible())
            return false;
        edit(*dialog);
        // What failed may have left it open, and the test would never end.
        if (QTest::currentTestFailed() && activeFlatDialog() == dialog)
            dialog->reject();
        return true;
    };
}

inline std::function<bool()> cancelFlatDialog()
{
    return inFlatDialog<FlatDialog>(
        [](FlatDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
}

inline QAbstractButton *buttonWithText(const QWidget &parent, const QString &text)
{
    const QList<QAbstractButton *> buttons = parent.findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons) {
        if (button->text().remove(u'&') == text)
            return button;
    }
    return nullptr;
}

// Presses a button of the next message box. "title|text" of it goes into `shown`.
inline std::function<bool()> inMessage(const QString &button, QString *shown = nullptr)
{
    return [button, shown] {
        auto *dialog = qobject_cast<MessageDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        if (shown) {
            *shown = dialog->windowTitle();
            const QList<QLabel *> labels = dialog->findChildren<QLabel *>();
            for (const QLabel *label : labels) {
                if (!label->text().isEmpty())
                    *shown += u'|' + label->text();
            }
        }
        if (QAbstractButton *found = buttonWithText(*dialog, button))
            found->click();
        else
            dialog->reject();
        return true;
    };
}

// Rolls that are typed into the initiative dialog in the order of its boxes: characters first,
// then monsters, each by name.
inline std::function<bool()> rollInitiative(const QList<int> &rolls)
{
    return inFlatDialog<InitiativeDialog>([rolls](InitiativeDialog &dialog) {
        const QList<QSpinBox *> boxes = dialog.findChildren<QSpinBox *>();
        for (int i = 0; i < rolls.size() && i < boxes.size(); ++i)
            boxes.at(i)->setValue(rolls.at(i));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
}

// The window is shown and active, and the library holds what the folder held when open() ran.
class FightFixture {
public:
    FightFixture()
    {
        QSettings().clear();
        // A folder without any encounter would be asked about.
        folder.write(QStringLiteral("Encounters/rest.txt"),
                     QStringLiteral("name=Rest\ndescription=\n"));
    }

    TestDataFolder folder;

    void open()
    {
        m_window = std::make_unique<MainWindow>();
        QString path = folder.path();
        QString display = path;
        setDataFolder(path, display);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }
    // As at the end of the program.
    void close() { m_window.reset(); }

    MainWindow &window() const { return *m_window; }
    template <typename Child>
    Child *find(const char *name) const
    {
        return m_window->findChild<Child *>(QLatin1String(name));
    }
    QAction *action(const char *name) const { return find<QAction>(name); }
    QSpinBox *hpBox() const { return find<QSpinBox>("hpBox"); }
    QTableView *table() const { return find<QTableView>("initiativeList"); }
    QString text(const char *label) const { return find<QLabel>(label)->text(); }

    // A click on the name of the row, with the given modifiers.
    void click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        // The list is drawn anew when the event loop comes round.
        table()->scrollTo(table()->model()->index(row, 1));
        const auto place = [&] { return table()->visualRect(table()->model()->index(row, 1)); };
        QTRY_VERIFY(table()->viewport()->rect().contains(place()) && !place().isEmpty());
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, modifiers, place().center());
    }

    static Creature *character(const QString &name)
    {
        return theCharacters->ensureCharacter(name, false);
    }
    // Made if need be.
    static Creature *monster(QString group, const QString &id)
    {
        return theMonsters->ensureTemplate(group, id, true);
    }

    // --- a roster without dialogs ---
    void setParty() const
    {
        appendEvent<SetPartyEvent>(CreatureList(theCharacters->all()), false,
                                   QList<CreatureItem>());
    }
    void addMonster(const QString &group, const QString &id) const
    {
        appendEvent<AddMonsterEvent>(CreatureList(QList<Creature *> {monster(group, id)}), false,
                                     QList<CreatureItem>());
    }
    // The characters Aria and Bram and the monster Rat (A), in this order.
    void openWithThree()
    {
        folder.addCharacter(QStringLiteral("Aria"));
        folder.addCharacter(QStringLiteral("Bram"));
        folder.addMonster(QStringLiteral("Rat"));
        open();
        setParty();
        addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    }
    void start(const QList<int> &rolls) const
    {
        Answer answer(rollInitiative(rolls));
        action("startStop")->trigger();
        QVERIFY(answer.wasAnswered);
        QVERIFY(theEncounter->isRunning());
    }

    // --- what stands in the history ---
    static QStringList eventClasses(int first = 0)
    {
        QStringList classes;
        for (int i = first; i < theHistory->eventCount(); ++i) {
            QString name = QLatin1String(theHistory->eventAt(i)->metaObject()->className());
            classes << name.remove(QStringLiteral("Event"));
        }
        return classes;
    }
    static QStringList order()
    {
        QStringList names;
        for (const Creature *creature : theEncounter->creatures())
            names << creature->displayName();
        return names;
    }

private:
    std::unique_ptr<MainWindow> m_window;
};
