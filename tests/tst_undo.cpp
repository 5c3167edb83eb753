// Long random fights: whatever was done is taken back and done again step by step, and a log read
// again gives the same fight.
#include <QGuiApplication>
#include <functional>
#include <random>

#include "creature.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "history.h"
#include "monsters.h"
#include "objectstream.h"
#include "rosterevents.h"
#include "testfight.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

// Raises random events. A lawful one raises only what the windows would offer; the other whatever
// can be constructed.
class RandomFight {
public:
    RandomFight(unsigned int seed, bool lawful);

    void step();
    const QList<Creature *> &everybody() const { return m_everybody; }

private:
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_random); }
    bool chance(int percent) { return upTo(99) < percent; }
    template <typename T>
    T anyOf(const QList<T> &list)
    {
        return list.isEmpty() ? T() : list.at(upTo(int(list.size()) - 1));
    }
    // One of the encounter, or in a lawless fight anybody.
    Creature *anyone();
    Creature *anyoneOrNull() { return chance(20) ? nullptr : anyone(); }
    QList<Creature *> some();
    CreatureList outsiders(bool monsters);
    QList<CreatureInit> rolls(bool monsters);

    // Each answers null when it doesn't suit the state of the fight.
    Event *turn(ObjectStream *stream);
    Event *order(ObjectStream *stream);
    Event *health(ObjectStream *stream);
    Event *surges(ObjectStream *stream);
    Event *rest(ObjectStream *stream);
    Event *effect(ObjectStream *stream);
    Event *removal(ObjectStream *stream);
    Event *roster(ObjectStream *stream);
    Event *arrival(ObjectStream *stream);
    Event *listing(ObjectStream *stream);
    Event *rename(ObjectStream *stream);

    std::mt19937 m_random;
    bool m_lawful;
    QList<Creature *> m_everybody;
    int m_newNames = 0;
};

RandomFight::RandomFight(unsigned int seed, bool lawful)
    : m_random(seed), m_lawful(lawful),
      m_everybody(TestFight::creatures(
          {"Aria", "Borin", "Cleo", "Rat (1)", "Rat (2)", "Rat (10)", "Ogre (a)", "Ogre (b)"}))
{
}

void RandomFight::step()
{
    using Raise = Event *(RandomFight::*)(ObjectStream *);
    static constexpr Raise kinds[] = {
        &RandomFight::turn,    &RandomFight::turn,   &RandomFight::order,   &RandomFight::health,
        &RandomFight::health,  &RandomFight::surges, &RandomFight::rest,    &RandomFight::effect,
        &RandomFight::removal, &RandomFight::roster, &RandomFight::arrival, &RandomFight::listing,
        &RandomFight::rename,
    };
    Event *event = nullptr;
    while (!event)
        event = (this->*kinds[upTo(int(std::size(kinds)) - 1)])(theHistory->getStream());
    theHistory->doEvent(event);
}

Creature *RandomFight::anyone()
{
    const QList<Creature *> present = theEncounter->creatures().list();
    return anyOf(m_lawful && !present.isEmpty() ? present : m_everybody);
}

QList<Creature *> RandomFight::some()
{
    QList<Creature *> result;
    for (int i = upTo(2); i >= 0; --i) {
        Creature *creature = anyone();
        if (!result.contains(creature))
            result << creature;
    }
    return result;
}

// Those who could be added.
CreatureList RandomFight::outsiders(bool monsters)
{
    CreatureList result;
    for (Creature *creature : std::as_const(m_everybody)) {
        const bool fits = creature->isMonster() == monsters;
        if (fits && (!theEncounter->contains(creature) || !m_lawful) && chance(60))
            result.insertSorted(creature);
    }
    return result;
}

QList<CreatureInit> RandomFight::rolls(bool monsters)
{
    QList<CreatureInit> result;
    for (const Creature *creature : theEncounter->creatures()) {
        if (creature->isMonster() == monsters)
            result << CreatureInit {chance(50) ? creature->displayName() : creature->keyName(),
                                    upTo(20), upTo(1000)};
    }
    return result;
}

Event *RandomFight::turn(ObjectStream *stream)
{
    const bool running = theEncounter->isRunning();
    if (!running && theEncounter->count() > 0 && chance(40))
        return new StartEncounterEvent(rolls(false), rolls(true), stream);
    if (!m_lawful && chance(3))
        return new StartEncounterEvent(rolls(false), rolls(true), stream);
    if ((running && chance(5)) || (!m_lawful && chance(5)))
        return new StopEncounterEvent(stream, false);
    return running || !m_lawful ? new NextTurnEvent(stream, false) : nullptr;
}

Event *RandomFight::order(ObjectStream *stream)
{
    Creature *creature = anyone();
    switch (upTo(4)) {
    case 0:
        return creature->isDelayed() ? nullptr : new DelayEvent(creature, stream);
    case 1:
        return creature->isReadied() ? nullptr : new ReadyEvent(creature, stream);
    case 2:
        if (m_lawful && !(theEncounter->isRunning() && creature->isDelayed()))
            return nullptr;
        return new JumpInEvent(creature, stream);
    case 3:
        if (m_lawful && !(theEncounter->isRunning() && creature->isReadied()))
            return nullptr;
        return new EndReadyEvent(creature, stream);
    default:
        return new AdjustInitiativeEvent(some(), upTo(6) - 3, stream);
    }
}

Event *RandomFight::health(ObjectStream *stream)
{
    switch (upTo(6)) {
    case 0:
    case 1:
        return new DamageEvent(anyoneOrNull(), some(), upTo(25), stream);
    case 2:
        return new OnGoingDamageEvent(anyoneOrNull(), anyone(), upTo(10), stream);
    case 3:
        return new RegenerationEvent(anyone(), upTo(10), stream);
    case 4:
        return new SetTempHPEvent(some(), upTo(10), stream);
    case 5:
        return new FailedDeathSavingThrowEvent(anyone(), stream);
    default:
        return new StabilizeEvent(anyoneOrNull(), anyone(), stream);
    }
}

Event *RandomFight::surges(ObjectStream *stream)
{
    switch (upTo(6)) {
    case 0:
    case 1:
        return new HealEvent(anyoneOrNull(), some(), upTo(4) - 2, upTo(15), stream);
    case 2:
        return new AdministerFirstAidEvent(anyoneOrNull(), anyone(), stream);
    case 3:
        return new GainHealingSurgeEvent(anyone(), stream);
    case 4:
        return new SecondWindEvent(anyone(), stream);
    case 5:
        return new UseActionPointEvent(anyone(), stream);
    default:
        return new UseSecondWindEvent(anyone(), chance(50) ? 1 : -1, stream);
    }
}

Event *RandomFight::rest(ObjectStream *stream)
{
    if (chance(60))
        return nullptr;
    if (chance(50)) {
        QList<RestedCreature> rested;
        const QList<Creature *> creatures = some();
        for (Creature *creature : creatures)
            rested << RestedCreature {creature, upTo(2), upTo(20), upTo(1)};
        return new ShortRestEvent(rested, stream);
    }
    return new ExtendedRestEvent(chance(50) ? QList<Creature *>() : some(), stream);
}

Event *RandomFight::effect(ObjectStream *stream)
{
    const QString text = chance(50) ? QString() : QStringLiteral("note");
    switch (upTo(3)) {
    case 0:
        return new EffectEvent(anyoneOrNull(), some(), text, upTo(6), upTo(33), stream);
    case 1:
        return new EffectEvent(anyoneOrNull(), some(), text, upTo(6), upTo(10) - 5,
                               EffectedAttributes::fromFlags(upTo(127)), stream);
    case 2:
        return new EffectEvent(anyoneOrNull(), some(), text, upTo(6), chance(50) ? 20 : 29,
                               upTo(10) - 5, stream);
    default:
        return new TotalDefenseEvent(anyone(), stream);
    }
}

Event *RandomFight::removal(ObjectStream *stream)
{
    Creature *creature = anyone();
    Effect *effect = anyOf(creature->effects());
    if (!effect && m_lawful)
        return nullptr;
    // In a lawless fight the effect may stand on another.
    if (!m_lawful && chance(30))
        effect = anyOf(anyone()->effects());
    switch (upTo(4)) {
    case 0:
        return new RemoveOnGoingEvent(creature, effect, stream);
    case 1:
        return new RemoveAtEndOfTurnEvent(creature, effect, stream);
    case 2:
        return new RemoveAtStartOfTurnEvent(creature, effect, stream);
    case 3:
        return new RemoveOnSaveEvent(creature, effect, stream);
    default:
        return new RemoveAtEndOfEncounterEvent(creature, effect, stream);
    }
}

Event *RandomFight::roster(ObjectStream *stream)
{
    if (theEncounter->count() < 3 && m_lawful)
        return nullptr;
    switch (upTo(3)) {
    case 0:
        return new DiedEvent(anyone(), stream);
    case 1:
        return new RemoveCreaturesEvent(some(), stream);
    case 2:
        return new RemoveCurrentEvent(anyone(), stream);
    default: {
        Creature *creature = anyone();
        CreatureVitality vitality = creature->liveVitality();
        vitality.maxHP = 10 + upTo(30);
        vitality.currHP = upTo(40) - 10;
        return new SetVitalityEvent(vitality, stream);
    }
    }
}

// As the windows do it: what was there is remembered, and then the newcomers are rolled.
Event *RandomFight::arrival(ObjectStream *stream)
{
    const bool monsters = chance(50);
    const CreatureList list = outsiders(monsters);
    if (list.isEmpty() && m_lawful)
        return nullptr;
    if (monsters && chance(20))
        return new SetEncounterEvent(
            {QString(), QStringLiteral("Cave"), QString(), upTo(9), upTo(900), QString()}, list,
            false, stream);
    QList<CreatureItem> oldItems;
    for (Creature *creature : list) {
        oldItems << creature->item();
        creature->setItem({creature, upTo(20), upTo(1000)});
    }
    if (monsters && list.count() == 1)
        return new AddMonsterEvent(list, false, oldItems, stream);
    if (monsters)
        return new AddMonstersEvent(QStringLiteral("More"), list, false, oldItems, stream);
    if (chance(20))
        return new SetPartyEvent(list, false, oldItems, stream);
    return new AddCharactersEvent(list, false, oldItems, stream);
}

Event *RandomFight::listing(ObjectStream *stream)
{
    Creature *creature = anyone();
    switch (upTo(2)) {
    case 0:
        return new ShowHideEvent(creature, !creature->isHidden(), stream);
    case 1:
        return new SetAliasEvent(creature, chance(50),
                                 chance(30) ? QString() : QStringLiteral("Thing"), stream);
    default: {
        Power none;
        none.name = QStringLiteral("None");
        Power *power = creature->powerAt(upTo(1));
        if (!power && m_lawful)
            return nullptr;
        return new PowerUsageChangedEvent(creature, power ? power : &none, upTo(8), stream);
    }
    }
}

Event *RandomFight::rename(ObjectStream *stream)
{
    Creature *creature = anyone();
    if (chance(70) || (m_lawful && !theEncounter->contains(creature)))
        return nullptr;
    const QString own = QStringLiteral("N%1").arg(m_lawful ? ++m_newNames : upTo(4));
    const QString newName = creature->isMonster()
        ? QString(creature->group() + QStringLiteral(" (") + own + u')')
        : own;
    return new RenameCreatureEvent(creature->displayName(), newName, stream);
}

} // namespace

class TestUndo : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void lawfulFight_data();
    void lawfulFight();
    void lawlessFight_data();
    void lawlessFight();
};

void TestUndo::init()
{
    failOnWarnings();
}

void TestUndo::lawfulFight_data()
{
    QTest::addColumn<unsigned int>("seed");
    for (unsigned int seed = 1; seed <= 4; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

// Every state on the way is met again on the way back, and on the way forward but for the numbers
// of the hits, which go on counting.
void TestUndo::lawfulFight()
{
    QFETCH(const unsigned int, seed);
    constexpr int Steps = 1500;
    TestFight fight;
    RandomFight random(seed, true);
    const TestFight::Details way = TestFight::TurnMarks;
    const TestFight::Details all = TestFight::TurnMarks | TestFight::HitNumbers;
    QStringList backward {TestFight::stateText(random.everybody(), all)};
    QStringList forward {TestFight::stateText(random.everybody(), way)};
    for (int i = 0; i < Steps; ++i) {
        random.step();
        backward << TestFight::stateText(random.everybody(), all);
        forward << TestFight::stateText(random.everybody(), way);
    }
    for (int i = Steps - 1; i >= 0; --i) {
        theHistory->stepBack();
        QVERIFY2(TestFight::stateText(random.everybody(), all) == backward.at(i),
                 qPrintable(theHistory->eventText(i) + u'\n' + backward.at(i) + u'\n'
                            + TestFight::stateText(random.everybody(), all)));
    }
    for (int i = 1; i <= Steps; ++i) {
        theHistory->stepForward();
        QVERIFY2(TestFight::stateText(random.everybody(), way) == forward.at(i),
                 qPrintable(theHistory->eventText(i - 1) + u'\n' + forward.at(i) + u'\n'
                            + TestFight::stateText(random.everybody(), way)));
    }

    QStringList names;
    for (const Creature *creature : random.everybody())
        names << creature->displayName();
    QStringList texts;
    for (int i = 0; i < Steps; ++i)
        texts << theHistory->eventText(i);
    fight.restart();
    QCOMPARE(theHistory->eventCount(), Steps);
    for (int i = 0; i < Steps; ++i)
        QCOMPARE(theHistory->eventText(i), texts.at(i));
    QCOMPARE(TestFight::stateText(TestFight::creatures(names), way), forward.last());
    theHistory->moveTo(-1);
    QCOMPARE(theEncounter->count(), 0);
    QVERIFY(!theEncounter->isRunning());
}

void TestUndo::lawlessFight_data()
{
    lawfulFight_data();
}

// Events that no window would raise leave marks that nothing keeps, but who was in the encounter,
// and in which order, comes back, and so does everybody's health.
void TestUndo::lawlessFight()
{
    QFETCH(const unsigned int, seed);
    constexpr int Steps = 1500;
    TestFight fight;
    RandomFight random(seed, false);
    QStringList states {TestFight::stateText(random.everybody(), {})};
    for (int i = 0; i < Steps; ++i) {
        random.step();
        states << TestFight::stateText(random.everybody(), {});
    }
    for (int i = Steps - 1; i >= 0; --i) {
        theHistory->stepBack();
        QVERIFY2(TestFight::stateText(random.everybody(), {}) == states.at(i),
                 qPrintable(theHistory->eventText(i) + u'\n' + states.at(i) + u'\n'
                            + TestFight::stateText(random.everybody(), {})));
    }
    theHistory->moveTo(Steps - 1);
    QCOMPARE(theHistory->position(), Steps - 1);
}

MORVANE_TEST_MAIN(QGuiApplication, TestUndo)
#include "tst_undo.moc"
