// Hit points, surges, action points, rests, and the states that follow from them.
#include <QGuiApplication>
#include <QSignalSpy>
#include <limits>

#include "coreobjects.h"
#include "creatures.h"
#include "encounter.h"
#include "tables.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Most = std::numeric_limits<int>::max();
constexpr int Least = std::numeric_limits<int>::min();

std::unique_ptr<Creature> makeOne(bool isMonster, int maxHP)
{
    return isMonster ? makeMonster(u"Rat"_s, u"1"_s, maxHP) : makeCharacter(u"Aria"_s, maxHP);
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
    void damage();
    void healing();
    void states();
    void fallAndRise();
    void actionPoints();
    void previewComesAndGoes();
    void previewSplitsActionPoints();
    void endOfEncounter();
    void extremeNumbersStopAtTheEnds();

private:
    std::unique_ptr<CoreObjects> m_objects;
};

void TestVitality::damage()
{
    const auto strike = [](const QStringList &row) -> QString {
        const QList<int> given = numbers(row);
        const auto aria = makeCharacter(u"Aria"_s);
        aria->setCurrHP(given[0]);
        aria->setTempHP(given[1]);
        aria->takeDamage(given[2], nullptr);
        // It went through the history: no change from outside.
        if (aria->shadowVitality().currHP != aria->currHP() || !aria->lastHitBy().isEmpty())
            return u"a change from outside"_s;
        return u"%1 %2 %3 %4"_s.arg(aria->currHP())
            .arg(aria->tempHP())
            .arg(aria->damageTaken())
            .arg(QVariant(aria->isStable()).toString());
    };
    QCOMPARE(differences(u"damage"_s, 4, strike), QString());
}

void TestVitality::healing()
{
    const auto heal = [](const QStringList &row) -> QString {
        const QList<int> given = numbers(row);
        const auto aria = makeCharacter(u"Aria"_s);
        aria->takeDamage(30 - given[0], nullptr);
        aria->setCurrHS(given[1]);
        aria->heal(given[2], given[3]);
        if (!(aria->shadowVitality() == aria->liveVitality()) || aria->healCount() != 1)
            return u"a change from outside"_s;
        return u"%1 %2 %3"_s.arg(aria->currHP())
            .arg(aria->currHS())
            .arg(QVariant(aria->isStable()).toString());
    };
    QCOMPARE(differences(u"healing"_s, 5, heal), QString());
}

void TestVitality::states()
{
    const auto stateOf = [](const QStringList &row) -> QString {
        const QList<int> given = numbers(row);
        const auto creature = makeOne(row[0] == u"monster", given[1]);
        creature->setCurrHP(given[2]);
        creature->setFailedDeathSaves(given[3]);
        QStringList states;
        if (creature->isDead())
            states << u"Dead"_s;
        if (creature->isDying())
            states << u"Dying"_s;
        if (creature->isBloodied())
            states << u"Bloodied"_s;
        return u"%1 %2 %3"_s.arg(states.isEmpty() ? u"Up"_s : states.join(u'+'))
            .arg(creature->hpPercent())
            .arg(creature->playersHpPercent());
    };
    QCOMPARE(differences(u"states"_s, 5, stateOf), QString());
}

// The road of a character between life and death, as far as hits, heals and rests decide it.
void TestVitality::fallAndRise()
{
    const auto aria = makeCharacter(u"Aria"_s);
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

void TestVitality::actionPoints()
{
    const auto aria = makeCharacter(u"Aria"_s);
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
    const auto aria = makeCharacter(u"Aria"_s);
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
    const auto aria = makeCharacter(u"Aria"_s);
    theEncounter->setCurrentIndex(0);
    aria->useActionPoint(1);
    aria->setRestAP(1);
    QCOMPARE(aria->currAP(), 1);
    QCOMPARE(aria->apUsedInEncounter(), 0);
    aria->clearRestAdditions();
    QCOMPARE(aria->currAP(), 0);
    QCOMPARE(aria->apUsedInEncounter(), 1);
}

void TestVitality::endOfEncounter()
{
    const auto dead = makeCharacter(u"Aria"_s, 25);
    dead->takeDamage(26, nullptr);
    dead->setFailedDeathSaves(3);
    dead->stopEncounter();
    QCOMPARE(dead->currHP(), -12);
    QVERIFY(dead->isDead());
    QCOMPARE(dead->failedDeathSaves(), 0);

    // Lowered by the rule, which isn't a change that the log has to be told of.
    const auto bledOut = makeCharacter(u"Cleo"_s, 25);
    bledOut->takeDamage(26, nullptr);
    bledOut->setFailedDeathSaves(3);
    bledOut->syncShadows();
    bledOut->stopEncounter();
    QCOMPARE(bledOut->currHP(), -12);
    QVERIFY(bledOut->liveVitality() == bledOut->shadowVitality());

    const auto dying = makeCharacter(u"Bren"_s, 25);
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
    const auto aria = makeCharacter(u"Aria"_s);
    aria->takeDamage(Most, nullptr);
    aria->takeDamage(Most, nullptr);
    QCOMPARE(aria->currHP(), Least);
    QCOMPARE(aria->damageTaken(), Most);
}

MORVANE_TEST_MAIN(QGuiApplication, TestVitality)
#include "tst_vitality.moc"
