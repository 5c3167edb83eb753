// What each event says in the history, who sees it, and what it does in the cases that are easily
// got wrong.
#include <QGuiApplication>
#include <array>

#include "characters.h"
#include "creature.h"
#include "datatable.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "eventfactory.h"
#include "history.h"
#include "objectstream.h"
#include "outsidechanges.h"
#include "rosterevents.h"
#include "testfight.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

using namespace Qt::StringLiterals;

class TestEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void readsAndIsSeen();
    void oldStartWithoutVitality();
    void turnsCountForWhoseTurnEnds();
    void readyActionKeepsTheTurn();
    void jumpInTakesTheTurn();
    void turnsWithoutATurn();
    void tempHPOnlyRaise();
    void gainedSurgeLiftsToZero();
    void failedSavesCountFromTheSnapshot();
    void nothingIsLoggedBehindARest();
    void secondWindPutsItsEffectOn();
    void outsideChange();
    void signedAmounts();
    void removedEffectComesBackToItsPlace();
    void powerUse();
    void additionsFindTheirPlace_data();
    void additionsFindTheirPlace();
    void renameInTheFight();
    void renameThatTheHistoryLearnsOf();
    void renameJoinsAStandIn();

private:
    Creature *creature(const char *name) { return TestFight::creature(QString::fromUtf8(name)); }
    QStringList order() const;
    // The stream of the log stays at the record's start, as for the history.
    template <typename EventClass, typename... Arguments>
    std::unique_ptr<EventClass> made(Arguments &&...arguments)
    {
        return std::make_unique<EventClass>(std::forward<Arguments>(arguments)...,
                                            theHistory->getStream());
    }
    void start();
    void check(int type, const char *text, bool seen, Event *event) const;
    // Applies the event, and sees that it can be taken back.
    static void apply(Event &event);
    static std::unique_ptr<Event> readBack();

    std::unique_ptr<TestFight> m_fight;
};

void TestEvents::init()
{
    failOnWarnings();
    m_fight = std::make_unique<TestFight>();
    TestFight::setRoster({u"Aria"_s, u"Borin"_s, u"Rat (1)"_s, u"Rat (2)"_s});
}

void TestEvents::cleanup()
{
    m_fight.reset();
}

QStringList TestEvents::order() const
{
    QStringList names;
    for (const Creature *each : theEncounter->creatures())
        names << each->displayName();
    return names;
}

void TestEvents::apply(Event &event)
{
    const auto state = [] {
        return TestFight::stateText(
            TestFight::creatures({"Aria", "Borin", "Cleo", "Rat (1)", "Rat (2)", "Ogre (1)"}),
            TestFight::TurnMarks);
    };
    const QString before = state();
    event.redo();
    event.undo();
    QCOMPARE(state(), before);
    event.redo();
}

// As in a replay.
std::unique_ptr<Event> TestEvents::readBack()
{
    bool ok = true;
    return std::unique_ptr<Event>(readEvent(theHistory->getStream(), &ok));
}

// Round 1, with Aria's turn and the order of the roster.
void TestEvents::start()
{
    theEncounter->setPosition({1, 0, {}});
}

// Written and read back, an event is the same.
void TestEvents::check(int type, const char *text, bool seen, Event *event) const
{
    ObjectStream *stream = theHistory->getStream();
    const int start = stream->position();
    const std::unique_ptr<Event> written(event);
    QCOMPARE(start + written->size(), stream->size());
    bool ok = true;
    const std::unique_ptr<Event> read(readEvent(stream, &ok));
    QVERIFY(read && ok);
    QCOMPARE(read->metaObject(), written->metaObject());
    QCOMPARE(read->size(), written->size());
    for (const auto &each : {written.get(), read.get()}) {
        QCOMPARE(each->text(), QString::fromUtf8(text));
        QCOMPARE(each->type(), type);
        QCOMPARE(each->isVisibleToPlayers(), seen);
        QCOMPARE(each->startsEncounter(), type == EventType::StartEncounter);
    }
    QCOMPARE(stream->position(), start);
}

// The number of the type, the text, whether the players see it.
void TestEvents::readsAndIsSeen()
{
    Creature *aria = creature("Aria");
    Creature *borin = creature("Borin");
    Creature *rat = creature("Rat (1)");
    ObjectStream *s = theHistory->getStream();
    check(6, "Healed 8 (+1 HS): Borin", true, new HealEvent(nullptr, borin, -1, 8, s));
    check(6, "Healing Surges -1: Borin", true, new HealEvent(nullptr, borin, 1, 0, s));
    check(6, "Healing Surges +2: Borin", true, new HealEvent(nullptr, borin, -2, 0, s));
    check(9, "Partial Cover (a barrel): Aria", true,
          new EffectEvent(aria, QList {aria}, u"a barrel"_s, 4, EffectType::PartialCover, s));
    rat->setHidden(true);
    check(19, "Died: Rat (1)", false, new DiedEvent(rat, s));
    rat->setHidden(false);
    check(35,
          "Changed Aria: Init +-2; Max HP 31; Curr HP 29; MAX HS 7; Curr HS 6; HS Value 5; Init AP "
          "2; AP 3",
          true, new SetVitalityEvent({aria, -2, 31, 29, 7, 6, 5, 2, 3}, s));
    CreatureVitality vitality = aria->liveVitality();
    vitality.initBonus = NotStated;
    check(35, "Changed Aria: Init -", true, new SetVitalityEvent(vitality, s));
    check(36, "Removed: Aria, Rat (1)", false, new RemoveCreaturesEvent(QList {aria, rat}, s));
    check(38, "Initiative +1: Rat (1)", false, new AdjustInitiativeEvent(QList {rat}, 1, s));
    check(42, "Gain Second Wind: Aria", true, new UseSecondWindEvent(aria, 1, s));
    check(42, "", true, new UseSecondWindEvent(aria, 5, s));
}

// A replay brings back what the creatures were at the start, unless the log is too old to tell.
void TestEvents::oldStartWithoutVitality()
{
    ObjectStream *stream = theHistory->getStream();
    const auto written = made<StartEncounterEvent>(QList<CreatureInit>(), QList<CreatureInit>());
    creature("Aria")->setCurrHP(3);
    bool ok = true;
    const std::unique_ptr<Event> read(readEvent(stream, &ok));
    read->redo();
    QCOMPARE(creature("Aria")->currHP(), 30);
    read->undo();
    QCOMPARE(creature("Aria")->currHP(), 3);

    stream->markRecord();
    stream->writeInt(ID_EVENT_TYPE, EventType::StartEncounter);
    for (int list = 0; list < 2; ++list) {
        stream->writeInt(ID_CREATURE_INIT_LIST_SIZE, 0);
        stream->writeEnd(ID_CREATURE_INIT_LIST_END);
    }
    stream->writeEnd(ID_START_ENCOUNTER_EVENT_END);
    stream->finishRecord();
    const std::unique_ptr<Event> old(readEvent(stream, &ok));
    old->redo();
    QVERIFY(theEncounter->isRunning());
    QCOMPARE(creature("Aria")->currHP(), 3);
}

void TestEvents::turnsCountForWhoseTurnEnds()
{
    start();
    creature("Borin")->setReadied(true);
    NextTurnEvent event(theHistory->getStream(), false);
    apply(event);
    QCOMPARE(theEncounter->current(), creature("Borin"));
    QCOMPARE(creature("Aria")->turnCount(), 1);
    QCOMPARE(creature("Borin")->turnCount(), 0);
    QVERIFY(!creature("Borin")->isReadied());

    theEncounter->setPosition({2, 3, {}});
    NextTurnEvent last(theHistory->getStream(), false);
    apply(last);
    QCOMPARE(theEncounter->position(), (EncounterPosition {3, 0, {}}));
}

void TestEvents::readyActionKeepsTheTurn()
{
    start();
    creature("Rat (2)")->setReadied(true);
    const auto event = made<EndReadyEvent>(creature("Rat (2)"));
    apply(*event);
    QCOMPARE(order(), QStringList({"Rat (2)", "Aria", "Borin", "Rat (1)"}));
    QCOMPARE(theEncounter->current(), creature("Aria"));
    QVERIFY(!creature("Rat (2)")->isReadied());
}

void TestEvents::jumpInTakesTheTurn()
{
    theEncounter->setPosition({1, 2, {}});
    creature("Aria")->setDelayed(true);
    const auto event = made<JumpInEvent>(creature("Aria"));
    apply(*event);
    QCOMPARE(order(), QStringList({"Borin", "Rat (1)", "Aria", "Rat (2)"}));
    QCOMPARE(theEncounter->current(), creature("Aria"));
    QCOMPARE(creature("Rat (1)")->turnCount(), 1);
    QVERIFY(!creature("Aria")->isDelayed());
}

// As a damaged log may ask for it: nobody moves.
void TestEvents::turnsWithoutATurn()
{
    const QStringList before = order();
    creature("Rat (1)")->setReadied(true);
    const auto next = std::make_unique<NextTurnEvent>(theHistory->getStream(), false);
    const auto readied = made<EndReadyEvent>(creature("Rat (1)"));
    for (Event *each : {static_cast<Event *>(next.get()), static_cast<Event *>(readied.get())}) {
        each->redo();
        QCOMPARE(theEncounter->position(), EncounterPosition());
        each->undo();
        QCOMPARE(theEncounter->position(), EncounterPosition());
        QCOMPARE(order(), before);
        QVERIFY(creature("Rat (1)")->isReadied());
    }
    const auto event = made<JumpInEvent>(creature("Rat (1)"));
    event->redo();
    QCOMPARE(order(), before);
    QVERIFY(!theEncounter->isRunning());
    event->undo();
    QCOMPARE(order(), before);
    QVERIFY(creature("Rat (1)")->isDelayed());
}

void TestEvents::tempHPOnlyRaise()
{
    const auto high = made<SetTempHPEvent>(QList<Creature *> {creature("Aria")}, 5);
    high->redo();
    const auto low = made<SetTempHPEvent>(QList<Creature *> {creature("Aria")}, 3);
    low->redo();
    QCOMPARE(creature("Aria")->tempHP(), 5);
    low->undo();
    QCOMPARE(creature("Aria")->tempHP(), 5);
    high->undo();
    QCOMPARE(creature("Aria")->tempHP(), 0);
}

void TestEvents::gainedSurgeLiftsToZero()
{
    Creature *aria = creature("Aria");
    aria->setCurrHS(2);
    aria->setCurrHP(-5);
    const auto event = made<GainHealingSurgeEvent>(aria);
    apply(*event);
    QCOMPARE(aria->currHP(), 0);
    QCOMPARE(aria->currHS(), 3);
}

void TestEvents::failedSavesCountFromTheSnapshot()
{
    creature("Aria")->setFailedDeathSaves(1);
    const auto event = made<FailedDeathSavingThrowEvent>(creature("Aria"));
    apply(*event);
    event->redo();
    QCOMPARE(creature("Aria")->failedDeathSaves(), 2);
}

// The log knows what a rest gives: no later event may take that for a change made outside.
void TestEvents::nothingIsLoggedBehindARest()
{
    const auto log = [](Event *event) { theHistory->doEvent(event); };
    const CreatureList party(TestFight::creatures({"Aria", "Borin"}));
    log(new SetPartyEvent(party, false, itemsOf(party), theHistory->getStream()));
    checkVitality(theHistory->getStream());
    log(new ExtendedRestEvent({}, theHistory->getStream()));
    const CreatureList rats(TestFight::creatures({"Rat (1)", "Rat (2)"}));
    log(new SetEncounterEvent({}, rats, false, theHistory->getStream()));
    const int count = theHistory->position();
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->position(), count);
    // An editor's change is logged all the same, and nobody else's.
    creature("Aria")->setField(&CreatureData::maxHP, 31);
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->position(), count + 1);
}

void TestEvents::secondWindPutsItsEffectOn()
{
    Creature *aria = creature("Aria");
    aria->setCurrHP(10);
    {
        const auto event = made<SecondWindEvent>(aria);
        apply(*event);
        QCOMPARE(aria->currHP(), 10 + aria->hsValue());
        QCOMPARE(aria->effectCount(), 1);
        QCOMPARE(aria->effectAt(0)->type(), int(EffectType::SecondWind));
        QVERIFY(aria->secondWindUsed());
    }
    // The event owned the effect.
    QCOMPARE(aria->effectCount(), 0);
}

void TestEvents::outsideChange()
{
    Creature *aria = creature("Aria");
    aria->setCurrHP(22);
    CreatureVitality vitality = aria->liveVitality();
    vitality.maxHP = 40;
    const CreatureVitality shadow = aria->shadowVitality();
    const auto event = made<SetVitalityEvent>(vitality);
    QCOMPARE(event->text(), u"Changed Aria: Max HP 40; Curr HP 22"_s);
    apply(*event);
    QCOMPARE(aria->maxHP(), 40);
    QCOMPARE(aria->shadowVitality(), vitality);
    event->undo();
    QCOMPARE(aria->shadowVitality(), shadow);
}

// Given as type and amount, stored as type and amount. Type 0 stands for the form with attributes.
void TestEvents::signedAmounts()
{
    const std::array<int, 4> cases[] = {
        {20, -5, 20, 5}, {20, 5, 21, 5}, {20, 0, 21, 0}, {29, -3, 29, 3},
        {29, 3, 28, 3},  {0, -2, 22, 2}, {0, 2, 23, 2},  {20, INT_MIN, 20, INT_MAX},
        {30, -4, 30, -4}};
    const QList<Creature *> targets = {creature("Aria"), creature("Rat (1)")};
    for (const auto &[type, amount, storedType, storedAmount] : cases) {
        const std::unique_ptr<EffectEvent> event = type == 0
            ? made<EffectEvent>(nullptr, targets, QString(), 4, amount,
                                EffectedAttributes {.ac = true})
            : made<EffectEvent>(nullptr, targets, QString(), 4, type, amount);
        apply(*event);
        for (Creature *target : targets) {
            QCOMPARE(target->effectCount(), 1);
            QCOMPARE(target->effectAt(0)->type(), storedType);
            QCOMPARE(target->effectAt(0)->amount(), storedAmount);
            QCOMPARE(target->effectAt(0)->target(), target);
        }
        event->undo();
    }
}

void TestEvents::removedEffectComesBackToItsPlace()
{
    Creature *aria = creature("Aria");
    std::vector<std::unique_ptr<EffectEvent>> events;
    for (int type : {EffectType::Prone, EffectType::Slowed, EffectType::Dazed}) {
        events.push_back(made<EffectEvent>(nullptr, QList<Creature *> {aria}, QString(), 3, type));
        events.back()->redo();
    }
    Effect *slowed = aria->effectAt(1);
    made<RemoveOnSaveEvent>(aria, slowed);
    const std::unique_ptr<Event> read = readBack();
    read->redo();
    QCOMPARE(aria->effectCount(), 2);
    QCOMPARE(aria->indexOfEffect(slowed), -1);
    read->undo();
    QCOMPARE(aria->indexOfEffect(slowed), 1);
}

void TestEvents::powerUse()
{
    struct Case {
        const char *power;
        int before, usage, after;
        const char *text;
    };
    // The limit of an unknown power is 2.
    const Case cases[] = {{"Bite", 0, 0, 1, "Rat (1): Used Bite"},
                          {"Bite", 1, 0, 1, "Rat (1): Used Bite"},
                          {"Bite", 2, 0, 3, "Rat (1): Used Bite"},
                          {"Bite", 4, 0, 3, "Rat (1): Used Bite"},
                          {"Bite", 1, 1, 2, "Rat (1): Unused Bite"},
                          {"Bite", 3, 1, 4, "Rat (1): Unused Bite"},
                          {"Bite", 1, 5, 1, "Recharge 4: Rat (1) - Bite"},
                          {"Bite", 1, 6, 2, "Recharge 5: Rat (1) + Bite"},
                          {"Bite", 1, 8, 1, ""},
                          {"Howl", 0, 2, 0, "Recharge 1: Rat (1) - Howl"}};
    Creature *rat = creature("Rat (1)");
    for (const Case &each : cases) {
        Power *bite = rat->powerByName(u"Bite"_s);
        bite->usageState = each.before;
        Power named;
        named.name = QLatin1String(each.power);
        const auto event = made<PowerUsageChangedEvent>(rat, &named, each.usage);
        QCOMPARE(event->text(), QLatin1String(each.text));
        apply(*event);
        QCOMPARE(bite->usageState, each.after);
    }
}

void TestEvents::additionsFindTheirPlace_data()
{
    addColumns<int, int, int>({"type", "current", "place"});
    QTest::newRow("monster before the start") << 28 << -1 << 4;
    QTest::newRow("encounter before the start") << 29 << -1 << 4;
    QTest::newRow("character before the start") << 31 << -1 << 0;
    QTest::newRow("monster in the fight") << 28 << 1 << 2;
    QTest::newRow("character in the fight") << 31 << 1 << 2;
}

void TestEvents::additionsFindTheirPlace()
{
    auto [type, current] = fetch<int, int>({"type", "current"});
    theEncounter->setPosition({current < 0 ? 0 : 1, current, {}});
    Creature *added = type == 31 ? creature("Cleo") : creature("Ogre (1)");
    const QList<CreatureItem> oldItems = {added->item()};
    added->setItem({added, 17, 99});
    const CreatureList list {QList<Creature *> {added}};
    if (type == 28)
        made<AddMonsterEvent>(list, true, oldItems);
    else if (type == 29)
        made<AddMonstersEvent>(u"Cave"_s, list, true, oldItems);
    else
        made<AddCharactersEvent>(list, true, oldItems);
    added->setItem(oldItems.first());
    added->setCurrHP(1);

    // As in a replay, where the creature comes fresh from its file.
    const std::unique_ptr<Event> event = readBack();
    event->redo();
    QTEST(theEncounter->indexOf(added), "place");
    QCOMPARE(theEncounter->currentIndex(), current);
    QVERIFY(added->isHidden());
    QCOMPARE(added->initRoll(), 17);
    QCOMPARE(added->initRandom(), 99);
    QCOMPARE(added->currHP(), added->maxHP());
    event->undo();
    QCOMPARE(theEncounter->count(), 4);
    QCOMPARE(added->initRoll(), 0);
    QCOMPARE(added->currHP(), 1);
    QVERIFY(!added->isHidden());
}

void TestEvents::renameInTheFight()
{
    Creature *rat = creature("Rat (1)");
    rat->setNameBefore(u"1"_s);
    const auto event = made<RenameCreatureEvent>(u"Rat (1)"_s, u"Rat (7)"_s);
    event->redo();
    QCOMPARE(rat->displayName(), u"Rat (7)"_s);
    QCOMPARE(rat->nameBefore(), u"7"_s);
    QCOMPARE(creature("Rat (7)"), rat);
    event->undo();
    QCOMPARE(rat->displayName(), u"Rat (1)"_s);
    QCOMPARE(rat->nameBefore(), u"1"_s);

    // A name that another creature of the fight has stays with it.
    made<RenameCreatureEvent>(u"Rat (1)"_s, u"Rat (2)"_s)->redo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
    // Who isn't in the fight isn't renamed.
    Creature *ogre = creature("Ogre (1)");
    made<RenameCreatureEvent>(u"Ogre (1)"_s, u"Ogre (2)"_s)->redo();
    QCOMPARE(ogre->displayName(), u"Ogre (1)"_s);
}

// The Character Creator has renamed already; the log is told once, and steps back with the name.
void TestEvents::renameThatTheHistoryLearnsOf()
{
    Creature *aria = creature("Aria");
    aria->setNameBefore(u"Aria"_s);
    aria->rename(u"Ariadne"_s);
    theEncounter->markVitalityStale();
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->eventCount(), 1);
    theEncounter->markVitalityStale();
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->eventCount(), 1);
    theHistory->stepBack();
    QCOMPARE(aria->name(), u"Aria"_s);
    theHistory->stepForward();
    QCOMPARE(aria->name(), u"Ariadne"_s);
}

// The log of a fight in which a character was renamed and saved, read again: its first records name
// a character that no file has any more.
void TestEvents::renameJoinsAStandIn()
{
    Creature *standIn = creature("Old Cleo");
    QVERIFY(standIn->isMissing());
    TestFight::setRoster({u"Old Cleo"_s, u"Rat (1)"_s});
    Creature *cleo = creature("Cleo");
    const int count = theCharacters->count();
    const auto event = made<RenameCreatureEvent>(u"Old Cleo"_s, u"Cleo"_s);
    event->redo();
    QCOMPARE(creature("Cleo"), standIn);
    QVERIFY(!standIn->isMissing());
    QVERIFY(!standIn->isModified());
    QCOMPARE(standIn->fileName(), cleo->fileName());
    QCOMPARE(standIn->maxHP(), 25);
    QCOMPARE(theCharacters->count(), count);
    QVERIFY(theCharacters->indexOf(standIn) >= 0);
    event->undo();
    QCOMPARE(standIn->displayName(), u"Old Cleo"_s);
}

MORVANE_TEST_MAIN(QGuiApplication, TestEvents)
#include "tst_events.moc"
