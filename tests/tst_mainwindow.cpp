// links: morvane_ui
// The DM's Display as a user works it: keys, clicks, menus and dialogs.
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>

#include "fightfixture.h"
#include "paths.h"
#include "playerspreview.h"
#include "playerswindow.h"
#include "testhome.h"
#include "vitalityevents.h"

class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void toolBarsShowAllButtons();
    void sharedKeyDoesNeither();
    void actionsFollowTheEncounter();
    void actionsFollowTheHealth();
    void temporaryHitPointsKeepTheFocusInTheBox();
    void surgeIsSpentWithTheHealing();
    void surgeNeedsOneValueForAll();
    void returnDealsNoSurge();
    void clearingAsksFirst();
    void truncatingAsksFirst();
    void closingAsksForAnUnwrittenLog();
    void closingOffersToSave();
    void layoutIsRemembered();
    void docksGiveWayToAForm();
    void playersWindowIsShownAndSeen();

private:
    void start() { m_fight->start({30, 20, 10}); }
    void type(const QString &number);
    bool isEnabled(const char *name) const { return m_fight->action(name)->isEnabled(); }
    QWidget *focus() const { return QApplication::focusWidget(); }
    QStackedWidget *pages() const { return m_fight->window().findChild<QStackedWidget *>(); }
    QTableView *historyList() const
    {
        return m_fight->window().findChild<QTableView *>(QStringLiteral("historyList"));
    }

    std::unique_ptr<FightFixture> m_fight;
};

void MainWindowTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"), 40);
    m_fight->folder.addCharacter(QStringLiteral("Bram"), 24);
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->folder.write(QStringLiteral("Encounters/den.txt"),
                          QStringLiteral("name=Den\ndescription=\nRat=A\n"));
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
}

void MainWindowTest::type(const QString &number)
{
    m_fight->window().focusHPBox();
    QTest::keyClicks(m_fight->hpBox(), number);
}

// The screen of these tests is too narrow for all bars in a row.
void MainWindowTest::toolBarsShowAllButtons()
{
    const QList<QToolBar *> bars = m_fight->window().findChildren<QToolBar *>();
    QSet<int> rows;
    for (const QToolBar *bar : bars) {
        rows.insert(bar->y());
        for (QAction *action : bar->actions())
            QVERIFY2(bar->widgetForAction(action)->isVisible(), qPrintable(action->objectName()));
    }
    QCOMPARE(bars.size(), 3);
    QVERIFY(rows.size() > 1);
}

void MainWindowTest::sharedKeyDoesNeither()
{
    start();
    const auto press = [this] {
        QTest::keyClick(m_fight->table(), Qt::Key_R, Qt::ControlModifier);
        return FightFixture::eventClasses().last();
    };
    m_fight->click(1);
    QVERIFY(isEnabled("ready") && isEnabled("remove"));
    QCOMPARE(press(), QStringLiteral("StartEncounter")); // and no warning
    m_fight->window().clearSelection();
    QVERIFY(isEnabled("ready") && !isEnabled("remove"));
    QCOMPARE(press(), QStringLiteral("NextTurn"));
    QCOMPARE(FightFixture::eventClasses().count(QStringLiteral("Ready")), 1);
    m_fight->action("startStop")->trigger();
    m_fight->click(0);
    QVERIFY(!isEnabled("ready") && isEnabled("remove"));
    QCOMPARE(press(), QStringLiteral("RemoveCreatures"));
    QCOMPARE(theEncounter->count(), 1);
}

void MainWindowTest::actionsFollowTheEncounter()
{
    QVERIFY(isEnabled("startStop") && isEnabled("extendedRest"));
    QVERIFY(!isEnabled("nextTurn") && !isEnabled("stepForward") && !isEnabled("truncateHistory"));
    QVERIFY(!isEnabled("remove") && !isEnabled("showHide") && !isEnabled("hit"));
    QCOMPARE(m_fight->action("startStop")->toolTip(), QStringLiteral("Start Encounter"));

    start();
    QCOMPARE(m_fight->action("startStop")->text(), QStringLiteral("Stop Encounter"));
    QVERIFY(isEnabled("nextTurn") && !isEnabled("extendedRest") && !isEnabled("upInitiative"));
    m_fight->click(0);
    QVERIFY(isEnabled("upInitiative") && isEnabled("remove") && !isEnabled("hit"));
    m_fight->hpBox()->setValue(3);
    QVERIFY(isEnabled("hit") && isEnabled("heal") && isEnabled("setTempHP"));

    while (theHistory->canStepBack())
        m_fight->action("stepBack")->trigger();
    QVERIFY(!isEnabled("startStop") && !isEnabled("stepBack") && isEnabled("stepForward"));
    QCOMPARE(m_fight->action("startStop")->toolTip(),
             QStringLiteral("Select a Party to Start Encounter"));
}

void MainWindowTest::actionsFollowTheHealth()
{
    m_fight->click(0);
    m_fight->click(1, Qt::ControlModifier);
    type(QStringLiteral("200"));
    m_fight->action("hit")->trigger();
    QVERIFY(!isEnabled("startStop") && !isEnabled("extendedRest"));
    QCOMPARE(m_fight->action("startStop")->toolTip(),
             QStringLiteral("Select a Party to Start Encounter"));
    m_fight->action("heal")->trigger();
    QVERIFY(isEnabled("startStop") && isEnabled("extendedRest"));

    m_fight->click(0);
    for (int left = theEncounter->at(0)->currHS(); left > 0; --left) {
        m_fight->action("surge")->trigger();
        m_fight->action("heal")->trigger();
    }
    QVERIFY(!isEnabled("surge"));
    m_fight->action("extendedRest")->trigger();
    QVERIFY(isEnabled("surge"));
}

void MainWindowTest::temporaryHitPointsKeepTheFocusInTheBox()
{
    m_fight->click(0);
    type(QStringLiteral("7"));
    m_fight->action("setTempHP")->trigger();
    QCOMPARE(theEncounter->at(0)->state().tempHP, 7);
    QCOMPARE(m_fight->hpBox()->value(), 0);
    QVERIFY(m_fight->hpBox()->hasFocus());
}

void MainWindowTest::surgeIsSpentWithTheHealing()
{
    m_fight->click(0);
    type(QStringLiteral("30"));
    m_fight->action("hit")->trigger();
    m_fight->action("surge")->trigger();
    QCOMPARE(m_fight->hpBox()->value(), 10);
    QVERIFY(isEnabled("heal") && !isEnabled("hit"));
    type(QStringLiteral("13"));
    m_fight->action("heal")->trigger();
    QCOMPARE(theEncounter->at(0)->currHP(), 23);
    QCOMPARE(theEncounter->at(0)->currHS(), 7);
    // Pressed twice it takes its value back.
    m_fight->action("surge")->trigger();
    m_fight->action("surge")->trigger();
    QCOMPARE(m_fight->hpBox()->value(), 0);
    type(QStringLiteral("2"));
    QVERIFY(isEnabled("hit"));
}

void MainWindowTest::surgeNeedsOneValueForAll()
{
    m_fight->click(0);
    QVERIFY(isEnabled("surge"));
    m_fight->click(1, Qt::ControlModifier);
    QCOMPARE(m_fight->window().selectedCount(), 2);
    QVERIFY(!isEnabled("surge"));
}

void MainWindowTest::returnDealsNoSurge()
{
    m_fight->click(0);
    m_fight->action("surge")->trigger();
    const int before = theHistory->eventCount();
    QTest::keyClick(m_fight->hpBox(), Qt::Key_Return);
    QCOMPARE(theHistory->eventCount(), before);
    QVERIFY(!isEnabled("hit"));
}

void MainWindowTest::clearingAsksFirst()
{
    start();
    QString shown;
    {
        Answer answer(inMessage(QStringLiteral("Cancel"), &shown));
        m_fight->action("newHistory")->trigger();
        QVERIFY(answer.wasAnswered);
    }
    QCOMPARE(shown,
             QStringLiteral("Encounter Running|An encounter is still running. When you "
                            "clear the history log, the encounter state will be "
                            "lost.<p>A backup of the history.log will be made in the "
                            "'Morvane Data/History' folder."));
    QVERIFY(theEncounter->isRunning());

    m_fight->click(0);
    Answer answer(inMessage(QStringLiteral("Clear History")));
    m_fight->action("newHistory")->trigger();
    QVERIFY(answer.wasAnswered);
    QCOMPARE(theHistory->eventCount(), 0);
    QCOMPARE(theEncounter->count(), 0);
    QVERIFY(m_fight->window().selectedCreatures().isEmpty());
    QVERIFY(!isEnabled("newHistory") && !isEnabled("startStop") && !isEnabled("remove"));
    QVERIFY(!QFile::exists(m_fight->folder.file(QStringLiteral("history.log"))));
    QCOMPARE(QDir(m_fight->folder.file(QStringLiteral("History"))).entryList(QDir::Files).size(),
             1);
}

void MainWindowTest::truncatingAsksFirst()
{
    m_fight->action("stepBack")->trigger();
    {
        Answer answer(inMessage(QStringLiteral("Cancel")));
        m_fight->action("truncateHistory")->trigger();
        QVERIFY(answer.wasAnswered);
    }
    QCOMPARE(theHistory->eventCount(), 2);
    Answer answer(inMessage(QStringLiteral("Truncate")));
    m_fight->action("truncateHistory")->trigger();
    QVERIFY(answer.wasAnswered);
    QCOMPARE(theHistory->eventCount(), 1);
    QVERIFY(!isEnabled("truncateHistory"));
}

// A folder in the place of the log stands for a disk that takes nothing.
void MainWindowTest::closingAsksForAnUnwrittenLog()
{
    start();
    QCoreApplication::processEvents();
    const QString path = historyPath();
    QVERIFY(QFile::remove(path) && QDir().mkpath(path));
    {
        Answer told(inMessage(QStringLiteral("OK")));
        m_fight->click(0);
        type(QStringLiteral("3"));
        m_fight->action("hit")->trigger();
        QTRY_VERIFY(told.wasAnswered);
    }
    const int events = theHistory->eventCount();
    const auto close = [this](const QString &button) {
        m_fight->window().show();
        Answer answer(inMessage(button));
        const bool closed = m_fight->window().close();
        return answer.wasAnswered && closed;
    };
    QVERIFY(close(QStringLiteral("Leave Without")));
    const QString elsewhere = QDir::tempPath() + QStringLiteral("/elsewhere.log");
    {
        Answer answer([&elsewhere] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return false;
            dialog->selectFile(elsewhere);
            static_cast<QDialog *>(dialog)->accept();
            return true;
        });
        QVERIFY(close(QStringLiteral("Save Elsewhere...")));
        QVERIFY(answer.wasAnswered);
    }
    QVERIFY(!close(QStringLiteral("Cancel")));
    QVERIFY(m_fight->window().isVisible());
    {
        // Choosing another folder asks as well.
        Answer answer(inMessage(QStringLiteral("Cancel")));
        m_fight->window().onSetRoot();
        QVERIFY(answer.wasAnswered);
    }
    {
        // The disk takes it again while the question is open.
        Answer answer([&path, press = inMessage(QStringLiteral("Try Again"))] {
            return QApplication::activeModalWidget() && QDir().rmdir(path) && press();
        });
        QVERIFY(m_fight->window().close());
        QVERIFY(answer.wasAnswered);
    }
    QFile log(path);
    QFile saved(elsewhere);
    QVERIFY(log.open(QIODevice::ReadOnly) && saved.open(QIODevice::ReadOnly));
    QCOMPARE(saved.readAll(), log.readAll());
    saved.remove();
    m_fight->close();
    m_fight->open();
    QCOMPARE(theHistory->eventCount(), events);
}

void MainWindowTest::closingOffersToSave()
{
    Creature *aria = theCharacters->at(0);
    const QString text = aria->statBlock();
    aria->setStatBlock(QString(text).replace(QStringLiteral("level=1"), QStringLiteral("level=2")));
    aria->setModified(true);
    QString shown;
    {
        Answer answer(inMessage(QStringLiteral("Cancel"), &shown));
        QVERIFY(!m_fight->window().close());
        QVERIFY(answer.wasAnswered);
    }
    QCOMPARE(shown,
             QStringLiteral("Not All Work Saved|<b>Aria</b> was not saved.<p>Do you want "
                            "to save all changes and then quit the application?"));
    QVERIFY(m_fight->window().isVisible());
    Answer answer(inMessage(QStringLiteral("Save Changes and Quit")));
    QVERIFY(m_fight->window().close());
    QVERIFY(answer.wasAnswered);
    QVERIFY(!aria->isModified());
    QVERIFY(m_fight->folder.read(QStringLiteral("Characters/aria.txt")).contains("level=2"));
}

void MainWindowTest::layoutIsRemembered()
{
    const auto dock = [this] {
        return m_fight->window().findChild<QDockWidget *>(QStringLiteral("historyWidget"));
    };
    QVERIFY(dock()->isVisible());
    dock()->toggleViewAction()->trigger();
    QVERIFY(!dock()->isVisible());
    m_fight->close();
    QVERIFY(!theMainWindow && !theEncounter && !theHistory);
    m_fight->open();
    QVERIFY(!dock()->isVisible());
}

void MainWindowTest::docksGiveWayToAForm()
{
    MainWindow &window = m_fight->window();
    window.resize(1000, 700);
    const QList<QDockWidget *> docks = window.findChildren<QDockWidget *>();
    const auto widths = [&] {
        QCoreApplication::processEvents();
        QList<int> all;
        for (const QDockWidget *dock : docks)
            all << dock->width();
        return all;
    };
    window.resizeDocks(docks, QList<int>(docks.size(), 300), Qt::Horizontal);
    const QList<int> before = widths();
    for (const char *name : {"shortRest", "conditions"}) {
        m_fight->click(0);
        Answer answer(inFlatDialog<FlatDialog>([&](FlatDialog &dialog) {
            QVERIFY(widths() != before);
            QVERIFY(dialog.width() <= dialog.parentWidget()->width());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        }));
        m_fight->action(name)->trigger();
        QVERIFY(answer.wasAnswered);
        QCOMPARE(widths(), before);
    }
}

// The DM's Display shows and hides the players' window, and a dock of it what they see there.
void MainWindowTest::playersWindowIsShownAndSeen()
{
    m_fight->close();
    makePlayersDisplay = []() -> std::unique_ptr<PlayersDisplay> {
        return std::make_unique<PlayersWindow>();
    };
    m_fight->open();
    makePlayersDisplay = nullptr;
    QWidget *players = thePlayersDisplay->displayWindow();
    const QAction *action = m_fight->action("playersWindow");
    auto *view = m_fight->window().findChild<PlayersPreview *>();
    QVERIFY(!players->isVisible() && !view->isVisible());
    QCOMPARE(action->text(), QStringLiteral("Show Player's Window..."));
    qobject_cast<QDockWidget *>(view->parentWidget())->toggleViewAction()->trigger();
    QVERIFY(view->isVisible() && !view->notice().isEmpty());

    m_fight->action("playersWindow")->trigger();
    QVERIFY(players->isVisible());
    QCOMPARE(action->toolTip(), QStringLiteral("Hide Player's Window"));
    QVERIFY(view->notice().isEmpty());
    QTRY_VERIFY(view->drawCount() > 0);
    const int drawn = view->drawCount();
    m_fight->start({30, 20, 10});
    QTRY_VERIFY(view->drawCount() > drawn);
    view->findChild<QPushButton *>()->click();
    QVERIFY(thePlayersDisplay->isCurtained() && !view->notice().isEmpty());
    thePlayersDisplay->setCurtained(false);
    QVERIFY(!view->findChild<QPushButton *>()->isChecked());

    m_fight->window().hideForReplay();
    QVERIFY(!players->isVisible());
    m_fight->window().showAfterReplay();
    QVERIFY(players->isVisible());
    players->close();
    QCOMPARE(action->text(), QStringLiteral("Show Player's Window..."));
    QVERIFY(!view->notice().isEmpty());
}

MORVANE_TEST_MAIN(QApplication, MainWindowTest)
#include "tst_mainwindow.moc"
