// links: morvane_ui
// The fight after the end of the program: everything comes back from the data folder alone.
#include "fightfixture.h"
#include "testhome.h"

namespace {

// What a DM sees of the fight.
QStringList fightAsShown()
{
    QStringList lines {QStringLiteral("round %1").arg(theEncounter->round()),
                       theEncounter->current() ? theEncounter->current()->displayName() : QString(),
                       theEncounter->name()};
    for (const Creature *creature : theEncounter->creatures())
        lines << QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                     .arg(creature->displayName(), creature->healthText(false),
                          creature->conditionsText(true, true, false, false))
                     .arg(creature->currHS())
                     .arg(creature->isHidden())
                     .arg(creature->alias())
                     .arg(creature->initRoll());
    return lines;
}

QStringList historyTexts()
{
    QStringList texts;
    for (int i = 0; i < theHistory->eventCount(); ++i)
        texts << theHistory->eventText(i);
    return texts;
}

} // namespace

class RestartTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fight.reset(); }

    void fightComesBack();
    void steppedBackEndComesBackApplied();
    void newEventCutsTheTailForGood();
    void fightSurvivesALostFile();

private:
    void fight();
    void hit(int row, int damage);
    void restart();

    std::unique_ptr<FightFixture> m_fight;
};

void RestartTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(QStringLiteral("Aria"));
    m_fight->folder.addCharacter(QStringLiteral("Bram"));
    m_fight->folder.addMonster(QStringLiteral("Rat"));
    m_fight->folder.addMonster(QStringLiteral("Wolf"));
    m_fight->open();
    fight();
}

void RestartTest::hit(int row, int damage)
{
    m_fight->click(row);
    m_fight->hpBox()->setValue(damage);
    m_fight->action("hit")->trigger();
}

void RestartTest::fight()
{
    m_fight->setParty();
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("A"));
    m_fight->addMonster(QStringLiteral("Rat"), QStringLiteral("B"));
    m_fight->addMonster(QStringLiteral("Wolf"), QStringLiteral("A"));
    m_fight->start({25, 15, 20, 10});
    hit(0, 11);
    m_fight->action("surge")->trigger();
    m_fight->action("heal")->trigger();
    hit(2, 60);
    for (int turn = 0; turn < 6; ++turn)
        m_fight->action("nextTurn")->trigger();
    m_fight->click(1);
    m_fight->action("showHide")->trigger();
    m_fight->action("downInitiative")->trigger();
    hit(4, 3);
}

void RestartTest::restart()
{
    m_fight->close();
    m_fight->open();
}

void RestartTest::fightComesBack()
{
    QVERIFY(theEncounter->round() >= 2);
    const QStringList shown = fightAsShown();
    const QStringList texts = historyTexts();
    const int position = theHistory->position();
    restart();
    QCOMPARE(fightAsShown(), shown);
    QCOMPARE(historyTexts(), texts);
    QCOMPARE(theHistory->position(), position);
    QVERIFY(m_fight->action("nextTurn")->isEnabled());
    QCOMPARE(m_fight->table()->model()->rowCount(), theEncounter->count());
    // And it can be taken back to its start as before.
    while (theHistory->canStepBack())
        m_fight->action("stepBack")->trigger();
    QCOMPARE(theEncounter->count(), 0);
}

void RestartTest::steppedBackEndComesBackApplied()
{
    const QStringList shown = fightAsShown();
    m_fight->action("stepBack")->trigger();
    m_fight->action("stepBack")->trigger();
    QVERIFY(fightAsShown() != shown);
    restart();
    QCOMPARE(fightAsShown(), shown);
    QVERIFY(!m_fight->action("stepForward")->isEnabled());
}

void RestartTest::newEventCutsTheTailForGood()
{
    for (int step = 0; step < 3; ++step)
        m_fight->action("stepBack")->trigger();
    hit(0, 2);
    const QStringList shown = fightAsShown();
    const QStringList texts = historyTexts();
    restart();
    QCOMPARE(fightAsShown(), shown);
    QCOMPARE(historyTexts(), texts);
}

void RestartTest::fightSurvivesALostFile()
{
    const QStringList order = FightFixture::order();
    const QStringList texts = historyTexts();
    const int round = theEncounter->round();
    m_fight->close();
    QVERIFY(QFile::remove(m_fight->folder.file(QStringLiteral("Monsters/wolf.txt"))));
    QVERIFY(QFile::remove(m_fight->folder.file(QStringLiteral("Characters/bram.txt"))));
    m_fight->open();
    QCOMPARE(FightFixture::order(), order);
    QCOMPARE(historyTexts(), texts);
    QCOMPARE(theEncounter->round(), round);
    int missing = 0;
    for (const Creature *creature : theEncounter->creatures())
        missing += creature->isMissing();
    QCOMPARE(missing, 2);
}

MORVANE_TEST_MAIN(QApplication, RestartTest)
#include "tst_restart.moc"
