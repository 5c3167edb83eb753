// links: morvane_ui
// The commands of the turn cycle: who gets the turn, who leaves and who joins. What a turn raises,
// line by line, stands in tst_turnorder.cpp.
#include "fightfixture.h"
#include "testhome.h"
#include "vitalityevents.h"

class TurnsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void startGivesTheTurnToTheFirstWhoCanAct();
    void startCanBeCancelled();
    void nextTurnCountsRounds();
    void nextTurnPassesOverTheDead();
    void oneRoundWhereNobodyCanAct();
    void removing_data();
    void removing();
    void newcomersJoinBehindTheCurrentCreature();
    void tooNewLogStopsEveryCommand();

private:
    void start();
    void kill(Creature *creature);
    void nextTurn() { m_fight->action("nextTurn")->trigger(); }

    std::unique_ptr<FightFixture> m_fight;
    Creature *m_aria = nullptr;
    Creature *m_bram = nullptr;
    Creature *m_rat = nullptr;
};

void TurnsTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"));
    m_fight->folder.addCharacter(QStringLiteral("Bram"));
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->folder.write(QStringLiteral("Monsters/altar.txt"),
                          QStringLiteral("group=Altar\ntype=Trap\nlevel=1\nhit-points=10\n"));
    m_fight->open();
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    m_aria = theEncounter->at(0);
    m_bram = theEncounter->at(1);
    m_rat = theEncounter->at(2);
}

// Aria, the rat, Bram.
void TurnsTest::start()
{
    m_fight->start({30, 10, 20});
    QCOMPARE(FightFixture::order(), QStringList({"Aria", "Rat (A)", "Bram"}));
}

void TurnsTest::kill(Creature *creature)
{
    appendEvent<DamageEvent>(nullptr, creature, 100);
    QVERIFY(creature->isDead());
}

void TurnsTest::startGivesTheTurnToTheFirstWhoCanAct()
{
    m_fight->addMonster(QStringLiteral("Altar"), QStringLiteral("1"));
    kill(m_aria);
    const int before = theHistory->eventCount();
    m_fight->start({30, 10, 20});
    QCOMPARE(FightFixture::order(), QStringList({"Altar (1)", "Aria", "Rat (A)", "Bram"}));
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"StartEncounter", "NextTurn", "NextTurn"}));
    QCOMPARE(theEncounter->current(), m_rat);
    QCOMPARE(theEncounter->round(), 1);
}

void TurnsTest::startCanBeCancelled()
{
    const int before = theHistory->eventCount();
    Answer answer(cancelFlatDialog());
    m_fight->action("startStop")->trigger();
    QVERIFY(answer.wasAnswered);
    QCOMPARE(theHistory->eventCount(), before);
    QVERIFY(!theEncounter->isRunning());
}

void TurnsTest::nextTurnCountsRounds()
{
    start();
    const QList<Creature *> expected {m_rat, m_bram, m_aria};
    for (Creature *creature : expected) {
        nextTurn();
        QCOMPARE(theEncounter->current(), creature);
    }
    QCOMPARE(theEncounter->round(), 2);
    QCOMPARE(m_fight->text("roundLabel"), QStringLiteral("<b>Round</b> 2"));
}

void TurnsTest::nextTurnPassesOverTheDead()
{
    start();
    kill(m_rat);
    const int before = theHistory->eventCount();
    nextTurn();
    QCOMPARE(FightFixture::eventClasses(before), QStringList({"NextTurn", "NextTurn"}));
    QCOMPARE(theEncounter->current(), m_bram);
}

void TurnsTest::oneRoundWhereNobodyCanAct()
{
    start();
    for (Creature *creature : {m_aria, m_bram, m_rat})
        kill(creature);
    const int before = theHistory->eventCount();
    nextTurn();
    QCOMPARE(FightFixture::eventClasses(before), QStringList({"NextTurn", "NextTurn", "NextTurn"}));
    QCOMPARE(theEncounter->round(), 2);
    QCOMPARE(theEncounter->current(), m_aria);
}

void TurnsTest::removing_data()
{
    QTest::addColumn<QList<int>>("rows");
    QTest::addColumn<QStringList>("events");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("others") << QList<int> {1} << QStringList {"RemoveCreatures"}
                            << QStringList {"Aria", "Bram"};
    QTest::newRow("current") << QList<int> {0} << QStringList {"NextTurn", "RemoveCurrent"}
                             << QStringList {"Rat (A)", "Bram"};
    QTest::newRow("current and others")
        << QList<int> {0, 1} << QStringList {"RemoveCreatures", "NextTurn", "RemoveCurrent"}
        << QStringList {"Bram"};
    QTest::newRow("all") << QList<int> {0, 1, 2} << QStringList {"StopEncounter", "RemoveCreatures"}
                         << QStringList();
    QTest::newRow("none") << QList<int>() << QStringList()
                          << QStringList {"Aria", "Rat (A)", "Bram"};
}

void TurnsTest::removing()
{
    QFETCH(const QList<int>, rows);
    QFETCH(const QStringList, events);
    QFETCH(const QStringList, left);
    start();
    for (const int row : rows)
        m_fight->click(row, Qt::ControlModifier);
    QCOMPARE(m_fight->window().selectedRows(), rows);
    const int before = theHistory->eventCount();
    m_fight->window().onRemoveCreatures();
    QCOMPARE(FightFixture::eventClasses(before), events);
    QCOMPARE(FightFixture::order(), left);
    QVERIFY(m_fight->window().selectedRows().isEmpty());
    if (!left.isEmpty() && rows.contains(0))
        QCOMPARE(theEncounter->current()->displayName(), left.first());
}

void TurnsTest::newcomersJoinBehindTheCurrentCreature()
{
    m_fight->folder.write(QStringLiteral("Encounters/den.txt"),
                          QStringLiteral("name=Den\ndescription=\nRat=A,B,C\nalias#B=Gnawer\n"
                                         "hidden#C=true\n"));
    m_fight->close();
    m_fight->open();
    start();
    const int before = theHistory->eventCount();
    const auto add = [](FlatDialog &dialog) {
        auto *list = dialog.findChild<QTableView *>();
        list->selectRow(0);
        QTest::mouseClick(buttonWithText(dialog, QStringLiteral("Add")), Qt::LeftButton);
    };
    {
        Answer pick(inFlatDialog<FlatDialog>(add));
        Answer cancel([] {
            auto *dialog = dynamic_cast<InitiativeDialog *>(theMainWindow->activeDialog());
            if (dialog)
                QTest::keyClick(dialog, Qt::Key_Escape);
            return dialog != nullptr;
        });
        m_fight->action("loadEncounter")->trigger();
        QVERIFY(pick.wasAnswered && cancel.wasAnswered);
        QCOMPARE(theHistory->eventCount(), before);
    }
    Answer pick(inFlatDialog<FlatDialog>(add));
    Answer roll(rollInitiative({17}));
    m_fight->action("loadEncounter")->trigger();
    QVERIFY(pick.wasAnswered && roll.wasAnswered);
    QCOMPARE(FightFixture::eventClasses(before),
             QStringList({"AddMonsters", "SetAlias", "ShowHide"}));
    QCOMPARE(FightFixture::order(), QStringList({"Aria", "Rat (B)", "Rat (C)", "Rat (A)", "Bram"}));
    QCOMPARE(theEncounter->at(1)->alias(), QStringLiteral("Gnawer"));
    QVERIFY(theEncounter->at(2)->isHidden());
    QCOMPARE(theEncounter->at(2)->initRoll(), 17);
}

void TurnsTest::tooNewLogStopsEveryCommand()
{
    start();
    m_fight->close();
    QFile log(m_fight->folder.file(QStringLiteral("history.log")));
    QVERIFY(log.open(QIODevice::ReadWrite));
    QByteArray bytes = log.readAll();
    const QByteArray major("\1\0\0\0", 4); // the value of the first field
    bytes[bytes.indexOf(major)] = 2;
    log.seek(0);
    log.write(bytes);
    log.close();

    QString shown;
    {
        Answer answer(inMessage(QStringLiteral("OK"), &shown));
        m_fight->open();
        QVERIFY(answer.wasAnswered);
    }
    QVERIFY(shown.startsWith(QStringLiteral("History File too New|")));
    MainWindow &window = m_fight->window();
    const QList<std::function<void()>> commands {
        [&] { window.onStartStopEncounter(); }, [&] { window.onNextTurn(); },
        [&] { window.onHit(); }, [&] { window.onExtendedRest(); },
        [&] { window.removeCreatures(theCharacters->all()); }};
    for (const auto &command : commands) {
        Answer answer(inMessage(QStringLiteral("OK")));
        command();
        QVERIFY(answer.wasAnswered);
        QCOMPARE(theHistory->eventCount(), 0);
        QVERIFY(!window.activeDialog());
    }
    QVERIFY(log.open(QIODevice::ReadOnly));
    QCOMPARE(log.readAll(), bytes);
}

MORVANE_TEST_MAIN(QApplication, TurnsTest)
#include "tst_turns.moc"
