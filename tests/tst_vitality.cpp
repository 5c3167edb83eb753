// Hit points, surges, action points, rests, and the states that follow from them.
#include <QGuiApplication>
#include <QSignalSpy>
#include <limits>

#include "coreobjects.h"
#include "creatures.h"
#include "encounter.h"
#include "testhome.h"

namespace {

constexpr int Most = std::numeric_limits<int>::max();
constexpr int Least = std::numeric_limits<int>::min();

std::unique_ptr<Creature> makeOne(bool isMonster, int maxHP)
{
    return isMonster ? makeMonster(QStringLiteral("Rat"), QStringLiteral("1"), maxHP)
                     : makeCharacter(QStringLiteral("Aria"), maxHP);
}

} // namespace

class TestVitality : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        failOnWarnings();
        m_objects = std::make_unique<CoreObjects>();
    }
    void cleanup() { m_objects.reset(); }
    void damage_data();
    void damage();
    void healing_data();
    void healing();
    void states_data();
    void states();
    void fallAndRise();
    void failedSavesOutliveHealing();
    void hitsAreNumbered();
    void temporaryHitPointsOnlyRise();
    void actionPoints();
    void previewComesAndGoes();
    void previewSplitsActionPoints();
    void playersSeeNoPreview();
    void shortRest();
    void extendedRestReadiesAnew();
    void endOfEncounter();
    void extremeNumbersStopAtTheEnds();

private:
    std::unique_ptr<CoreObjects> m_objects;
};

void TestVitality::damage_data()
{
    QTest::addColumn<int>("hp");
    QTest::addColumn<int>("temp");
    QTest::addColumn<int>("amount");
    QTest::addColumn<int>("hpAfter");
    QTest::addColumn<int>("tempAfter");
    QTest::addColumn<int>("taken");
    QTest::addColumn<bool>("stable");
    QTest::newRow("plain") << 20 << 0 << 5 << 15 << 0 << 5 << true;
    QTest::newRow("all temporary") << 20 << 7 << 5 << 20 << 2 << 0 << true;
    QTest::newRow("some temporary") << 20 << 7 << 9 << 18 << 0 << 2 << true;
    QTest::newRow("just temporary") << 20 << 7 << 7 << 20 << 0 << 0 << true;
    QTest::newRow("to zero") << 20 << 0 << 20 << 0 << 0 << 20 << false;
    QTest::newRow("far below") << 20 << 0 << 500 << -480 << 0 << 500 << false;
    QTest::newRow("absorbed while down") << -3 << 9 << 5 << -3 << 4 << 0 << false;
}

void TestVitality::damage()
{
    QFETCH(int, hp);
    QFETCH(int, temp);
    QFETCH(int, amount);
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->setCurrHP(hp);
    aria->setTempHP(temp);
    aria->takeDamage(amount, nullptr);
    QTEST(aria->currHP(), "hpAfter");
    QTEST(aria->tempHP(), "tempAfter");
    QTEST(aria->damageTaken(), "taken");
    QTEST(aria->isStable(), "stable");
    // It went through the history: no change from outside.
    QCOMPARE(aria->shadowVitality().currHP, aria->currHP());
    QVERIFY(aria->lastHitBy().isEmpty());
}

void TestVitality::healing_data()
{
    QTest::addColumn<int>("hp");
    QTest::addColumn<int>("surges");
    QTest::addColumn<int>("heal");
    QTest::addColumn<int>("used");
    QTest::addColumn<int>("hpAfter");
    QTest::addColumn<int>("surgesAfter");
    QTest::addColumn<bool>("stable");
    QTest::newRow("plain") << 10 << 8 << 7 << 1 << 17 << 7 << true;
    QTest::newRow("counts from zero") << -5 << 8 << 3 << 0 << 3 << 8 << true;
    QTest::newRow("not over the top") << 28 << 8 << 7 << 0 << 30 << 8 << true;
    QTest::newRow("a surge gained while down") << -5 << 3 << 0 << -1 << 0 << 4 << false;
    QTest::newRow("no more surges than a day's") << 10 << 8 << 0 << -1 << 10 << 8 << true;
    QTest::newRow("no surge left") << 10 << 0 << 7 << 1 << 17 << 0 << true;
}

void TestVitality::healing()
{
    QFETCH(int, hp);
    QFETCH(int, surges);
    QFETCH(int, heal);
    QFETCH(int, used);
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->takeDamage(30 - hp, nullptr);
    aria->setCurrHS(surges);
    aria->heal(heal, used);
    QTEST(aria->currHP(), "hpAfter");
    QTEST(aria->currHS(), "surgesAfter");
    QTEST(aria->isStable(), "stable");
    QCOMPARE(aria->healCount(), 1);
    QCOMPARE(aria->shadowVitality().currHP, aria->currHP());
    QCOMPARE(aria->shadowVitality().currHS, aria->currHS());
}

void TestVitality::states_data()
{
    QTest::addColumn<bool>("isMonster");
    QTest::addColumn<int>("maxHP");
    QTest::addColumn<int>("hp");
    QTest::addColumn<int>("failed");
    QTest::addColumn<bool>("dead");
    QTest::addColumn<bool>("dying");
    QTest::addColumn<bool>("bloodied");
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("playersPercent");
    const bool monster = true;
    const bool character = false;
    const auto row = [](const char *name) -> QTestData & { return QTest::newRow(name); };
    row("minion up") << monster << 1 << 1 << 0 << false << false << false << 100 << 100;
    row("minion down") << monster << 1 << 0 << 0 << true << false << true << 0 << 0;
    row("monster hurt") << monster << 20 << 19 << 0 << false << false << false << 95 << 90;
    row("monster bloodied") << monster << 21 << 10 << 0 << false << false << true << 48 << 50;
    row("monster not yet") << monster << 21 << 11 << 0 << false << false << false << 53 << 90;
    row("monster below zero") << monster << 20 << -3 << 0 << true << false << true << 0 << 0;
    row("no stated hit points") << monster << 0 << 0 << 0 << false << false << false << 0 << 0;
    row("none stated, below") << monster << 0 << -1 << 0 << true << false << false << 0 << 0;
    row("one of three") << character << 3 << 1 << 0 << false << false << true << 34 << 34;
    row("character over the top") << character << 30 << 35 << 0 << false << false << false << 100
                                  << 100;
    row("dying at zero") << character << 30 << 0 << 2 << false << true << true << 0 << 0;
    row("dying below") << character << 30 << -1 << 0 << false << true << true << -4 << -4;
    row("before the threshold") << character << 25 << -11 << 0 << false << true << true << -44
                                << -44;
    row("threshold, rounded to zero")
        << character << 25 << -12 << 0 << true << false << true << -48 << -48;
    row("third failure") << character << 30 << 0 << 3 << true << false << true << 0 << 0;
    row("up with three failures") << character << 30 << 1 << 3 << false << false << true << 4 << 4;
    row("far below") << character << 30 << -900 << 0 << true << false << true << -100 << -100;
}

void TestVitality::states()
{
    QFETCH(bool, isMonster);
    QFETCH(int, maxHP);
    QFETCH(int, hp);
    QFETCH(int, failed);
    const auto creature = makeOne(isMonster, maxHP);
    creature->setCurrHP(hp);
    creature->setFailedDeathSaves(failed);
    QTEST(creature->isDead(), "dead");
    QTEST(creature->isDying(), "dying");
    QTEST(creature->isBloodied(), "bloodied");
    QTEST(creature->hpPercent(), "percent");
    QTEST(creature->playersHpPercent(), "playersPercent");
}

// The road of a character between life and death, as far as hits, heals and rests decide it.
void TestVitality::fallAndRise()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->takeDamage(32, nullptr);
    QVERIFY(aria->isDying() && !aria->isStable());
    aria->setStable(true);
    QVERIFY(aria->isDying() && aria->isStable());
    aria->setFailedDeathSaves(2);
    aria->takeDamage(1, nullptr);
    QVERIFY(aria->isDying() && !aria->isStable());
    aria->takeDamage(12, nullptr);
    QVERIFY(aria->isDead());
    aria->extendedRest(false);
    QVERIFY(!aria->isDead() && aria->isStable());
    QCOMPARE(aria->failedDeathSaves(), 0);
}

void TestVitality::failedSavesOutliveHealing()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->takeDamage(31, nullptr);
    aria->setFailedDeathSaves(2);
    aria->heal(5, 0);
    QCOMPARE(aria->failedDeathSaves(), 2);
    aria->takeDamage(6, nullptr);
    aria->setFailedDeathSaves(aria->failedDeathSaves() + 1);
    QVERIFY(aria->isDead());
}

void TestVitality::hitsAreNumbered()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    const auto rat = makeMonster(QStringLiteral("Rat"), QStringLiteral("1"));
    const auto bat = makeMonster(QStringLiteral("Bat"), QStringLiteral("1"));
    rat->takeDamage(1, aria.get());
    bat->takeDamage(1, nullptr);
    bat->takeDamage(1, rat.get());
    QCOMPARE(rat->lastHitBy(), QStringLiteral("Aria"));
    QCOMPARE(bat->lastHitBy(), QStringLiteral("Rat (1)"));
    // A hit without an attacker takes no number.
    QCOMPARE(bat->lastHitOrder(), rat->lastHitOrder() + 1);
}

void TestVitality::temporaryHitPointsOnlyRise()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->setTempHP(3);
    QSignalSpy updates(aria.get(), &Creature::doCreatureUpdated);
    aria->setTempHP(2);
    QCOMPARE(aria->tempHP(), 3);
    QCOMPARE(updates.count(), 0);
}

void TestVitality::actionPoints()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->setCurrAP(2);
    aria->useActionPoint(1);
    QCOMPARE(aria->currAP(), 1);
    QCOMPARE(aria->apUsedInEncounter(), 0);
    theEncounter->setCurrentIndex(0);
    aria->useActionPoint(1);
    QCOMPARE(aria->apUsedInEncounter(), 1);
    QCOMPARE(aria->shadowVitality().currAP, 0);
    QSignalSpy updates(aria.get(), &Creature::doCreatureUpdated);
    aria->useActionPoint(1);
    QCOMPARE(aria->currAP(), 0);
    QCOMPARE(aria->apUsedInEncounter(), 1);
    QCOMPARE(updates.count(), 1);
}

void TestVitality::previewComesAndGoes()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->takeDamage(35, nullptr);
    const CreatureState before = aria->state();
    QSignalSpy updates(aria.get(), &Creature::doCreatureUpdated);
    aria->setRestAdditions(12, 4, -2);
    aria->setRestAdditions(12, 4, -2);
    QCOMPARE(updates.count(), 1);
    QCOMPARE(aria->currHP(), 7);
    QCOMPARE(aria->tempHP(), 4);
    QCOMPARE(aria->currHS(), 6);
    QVERIFY(aria->isStable());
    // A dialog's preview isn't in the history.
    QCOMPARE(aria->shadowVitality().currHP, -5);

    aria->setRestAdditions(3, 4, -1);
    QCOMPARE(aria->currHP(), -2);
    QCOMPARE(aria->currHS(), 7);
    QVERIFY(!aria->isStable());
    aria->setRestAdditions(20, 0, -2);
    aria->setRestAP(1);
    QCOMPARE(aria->currAP(), 2);
    updates.clear();
    aria->clearRestAdditions();
    aria->clearRestAdditions();
    QCOMPARE(updates.count(), 1);
    QVERIFY(aria->state() == before);
    QCOMPARE(aria->restHP(), 0);
    QCOMPARE(aria->restHS(), 0);
}

void TestVitality::previewSplitsActionPoints()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    theEncounter->setCurrentIndex(0);
    aria->useActionPoint(1);
    aria->setRestAP(1);
    QCOMPARE(aria->currAP(), 1);
    QCOMPARE(aria->apUsedInEncounter(), 0);
    aria->clearRestAdditions();
    QCOMPARE(aria->currAP(), 0);
    QCOMPARE(aria->apUsedInEncounter(), 1);
}

void TestVitality::playersSeeNoPreview()
{
    const auto rat = makeMonster(QStringLiteral("Rat"), QStringLiteral("1"));
    rat->setRestAdditions(-20, 0, 0);
    QVERIFY(rat->isDead());
    QVERIFY(!rat->isDead(true));
    QCOMPARE(rat->playersHpPercent(), 100);
    QCOMPARE(rat->hpPercent(), 0);
}

void TestVitality::shortRest()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->takeDamage(33, nullptr);
    aria->setSecondWindUsed(true);
    aria->shortRest(14, 2, true);
    QCOMPARE(aria->currHP(), 14);
    QCOMPARE(aria->currHS(), 6);
    QCOMPARE(aria->currAP(), 2);
    QVERIFY(aria->liveVitality() == aria->shadowVitality());
    QVERIFY(aria->secondWindUsed());
    aria->shortRest(0, 0, false);
    QCOMPARE(aria->currAP(), 2);
}

void TestVitality::extendedRestReadiesAnew()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    const CreatureState rested = aria->state();
    aria->takeDamage(40, aria.get());
    aria->heal(3, 2);
    aria->setTempHP(5);
    aria->useActionPoint(1);
    aria->setTurnCount(4);
    aria->setDelayed(true);
    aria->setReadied(true);
    aria->setHidden(true);
    aria->setSecondWindUsed(true);
    aria->setFailedDeathSaves(2);
    QVERIFY(aria->hasBeenInCombat());
    aria->extendedRest(false);
    QVERIFY(!aria->hasBeenInCombat());
    QVERIFY(aria->isHidden());
    aria->syncShadows();
    QVERIFY(aria->state() == rested);
}

void TestVitality::endOfEncounter()
{
    const auto dead = makeCharacter(QStringLiteral("Aria"), 25);
    dead->takeDamage(26, nullptr);
    dead->setFailedDeathSaves(3);
    dead->stopEncounter();
    QCOMPARE(dead->currHP(), -12);
    QVERIFY(dead->isDead());
    QCOMPARE(dead->failedDeathSaves(), 0);

    const auto dying = makeCharacter(QStringLiteral("Bren"), 25);
    dying->takeDamage(30, nullptr);
    dying->setTempHP(4);
    dying->setSecondWindUsed(true);
    dying->setDelayed(true);
    dying->stopEncounter();
    QCOMPARE(dying->currHP(), -5);
    QVERIFY(dying->isDying() && dying->isStable());
    QCOMPARE(dying->tempHP(), 0);
    QVERIFY(!dying->secondWindUsed() && !dying->isDelayed());
}

// A damaged log may hold any number; the sanitizers watch the arithmetic.
void TestVitality::extremeNumbersStopAtTheEnds()
{
    for (const bool isMonster : {false, true}) {
        for (const int extreme : {Most, Least}) {
            const auto creature = makeOne(isMonster, 30);
            for (int i = 0; i < 3; ++i) {
                creature->takeDamage(extreme, creature.get());
                creature->setRestAdditions(extreme, extreme, extreme);
                creature->setRestAP(extreme);
                creature->useActionPoint(extreme);
                creature->clearRestAdditions();
                creature->heal(extreme, extreme);
                creature->shortRest(-(extreme / 2), extreme, true);
            }
            CreatureVitality vitality = creature->liveVitality();
            vitality.maxHP = extreme;
            vitality.currHP = Least;
            vitality.maxHS = Least;
            vitality.currHS = extreme;
            vitality.currAP = extreme;
            vitality.initBonus = extreme;
            creature->setVitality(vitality);
            creature->heal(extreme, 1);
            creature->setCurrHP(Least);
            creature->stopEncounter();
            creature->setTempHP(extreme);
            creature->takeDamage(Least, nullptr);
            for (const int hp : {Most, Least}) {
                creature->setCurrHP(hp);
                QVERIFY(std::abs(creature->hpPercent()) <= 100);
                QVERIFY(std::abs(creature->playersHpPercent()) <= 100);
            }
            creature->healthText(false);
            creature->playersHealthText(true);
            creature->speedLine(false);
        }
    }
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    aria->takeDamage(Most, nullptr);
    aria->takeDamage(Most, nullptr);
    QCOMPARE(aria->currHP(), Least);
    QCOMPARE(aria->damageTaken(), Most);
}

MORVANE_TEST_MAIN(QGuiApplication, TestVitality)
#include "tst_vitality.moc"
