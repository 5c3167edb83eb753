// What each event says in the history, who sees it, and what it does in the cases that are easily
// got wrong.
#include <QGuiApplication>
#include <functional>

#include "characters.h"
#include "creature.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "history.h"
#include "objectstream.h"
#include "rosterevents.h"
#include "testfight.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

using Make = std::function<Event *(ObjectStream *stream)>;
Q_DECLARE_METATYPE(Make)

class TestEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void readsAndIsSeen_data();
    void readsAndIsSeen();
    void unknownTypeEndsTheReading();
    void startBuildsTheOrder();
    void oldStartWithoutVitality();
    void turnsCountForWhoseTurnEnds();
    void turnRaisesTheRound();
    void turnOfAHiddenCreatureIsNotShown();
    void readyActionKeepsTheTurn();
    void jumpInTakesTheTurn();
    void turnsWithoutATurn();
    void deathAndItsWayBack();
    void tempHPOnlyRaise();
    void gainedSurgeLiftsToZero();
    void failedSavesCountFromTheSnapshot();
    void restOfTheParty();
    void nothingIsLoggedBehindARest();
    void secondWindPutsItsEffectOn();
    void outsideChange();
    void signedAmounts_data();
    void signedAmounts();
    void removedEffectComesBackToItsPlace();
    void removalWithoutEffect();
    void powerUse_data();
    void powerUse();
    void additionsFindTheirPlace_data();
    void additionsFindTheirPlace();
    void encounterReplacesTheMonsters();
    void partyReplacesTheCharacters();
    void renameInTheFight();
    void renameThatTheHistoryLearnsOf();
    void renameJoinsAStandIn();
    void aliasTexts();

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

    std::unique_ptr<TestFight> m_fight;
};

void TestEvents::init()
{
    failOnWarnings();
    m_fight = std::make_unique<TestFight>();
    TestFight::setRoster({QStringLiteral("Aria"), QStringLiteral("Borin"),
                          QStringLiteral("Rat (1)"), QStringLiteral("Rat (2)")});
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

// Round 1, with Aria's turn and the order of the roster.
void TestEvents::start()
{
    theEncounter->setPosition({1, 0, {}});
}

void TestEvents::readsAndIsSeen_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("seen");

    const auto named = [](const char *name) {
        return TestFight::creature(QString::fromUtf8(name));
    };
    const auto row = [](const char *name, int type, const char *text, bool seen, const Make &make) {
        QTest::newRow(name) << make << type << QString::fromUtf8(text) << seen;
    };
    const auto list = [named](std::initializer_list<const char *> names) {
        QList<Creature *> result;
        for (const char *name : names)
            result << named(name);
        return result;
    };
    const EffectedAttributes defences {.ac = true, .fortitude = true, .reflex = true, .will = true};
    const auto firstEffect = [named](const char *name, int effectType) {
        Creature *target = named(name);
        auto *effect = new Effect(nullptr, target, effectType, EffectEnd::SaveEnds);
        effect->setParent(target);
        target->addEffect(effect);
        return effect;
    };

    // clang-format off
    row("start", 1, "* Start Encounter: Rat (1) *", false, [](ObjectStream *s) {
        return new StartEncounterEvent({{QStringLiteral("Aria"), 9, 1}}, {{QStringLiteral("Rat"), 15, 2}}, s); });
    row("next turn", 2, "* Next Turn: Aria *", true, [](ObjectStream *s) { return new NextTurnEvent(s, false); });
    row("stop", 3, "* Stop Encounter *", true, [](ObjectStream *s) { return new StopEncounterEvent(s, false); });
    row("damage", 4, "Aria -> Damaged 12: Rat (1), Rat (2)", true, [=](ObjectStream *s) {
        return new DamageEvent(named("Aria"), list({"Rat (1)", "Rat (2)"}), 12, s); });
    row("damage among monsters", 4, "Damaged 3: Rat (1)", false, [=](ObjectStream *s) {
        return new DamageEvent(nullptr, named("Rat (1)"), 3, s); });
    row("ongoing damage", 5, "On Going Damage 5: Aria", true, [=](ObjectStream *s) {
        return new OnGoingDamageEvent(named("Rat (1)"), named("Aria"), 5, s); });
    row("heal", 6, "Healed 8: Borin", true, [=](ObjectStream *s) { return new HealEvent(nullptr, named("Borin"), 0, 8, s); });
    row("heal with surges", 6, "Aria -> Healed 8 (-2 HS): Borin", true, [=](ObjectStream *s) {
        return new HealEvent(named("Aria"), named("Borin"), 2, 8, s); });
    row("heal and gain surges", 6, "Healed 8 (+1 HS): Borin", true, [=](ObjectStream *s) {
        return new HealEvent(nullptr, named("Borin"), -1, 8, s); });
    row("spend surges", 6, "Healing Surges -1: Borin", true, [=](ObjectStream *s) {
        return new HealEvent(nullptr, named("Borin"), 1, 0, s); });
    row("gain surges", 6, "Healing Surges +2: Borin", true, [=](ObjectStream *s) {
        return new HealEvent(nullptr, named("Borin"), -2, 0, s); });
    row("regeneration", 7, "Regeneration 5: Rat (1)", false, [=](ObjectStream *s) {
        return new RegenerationEvent(named("Rat (1)"), 5, s); });
    row("temporary hit points", 8, "Gained Temporary HP 6: Aria, Borin", true, [=](ObjectStream *s) {
        return new SetTempHPEvent(list({"Aria", "Borin"}), 6, s); });
    row("condition", 9, "Aria -> Marked: Rat (1)", true, [=](ObjectStream *s) {
        return new EffectEvent(named("Aria"), list({"Rat (1)"}), QString(), EffectEnd::EndOfOriginsTurn, EffectType::Marked, s); });
    row("cover has no origin", 9, "Partial Cover (a barrel): Aria", true, [=](ObjectStream *s) {
        return new EffectEvent(named("Aria"), list({"Aria"}), QStringLiteral("a barrel"), 4, EffectType::PartialCover, s); });
    row("bonus", 9, "Aria -> +2 to all Defenses: Borin", true, [=](ObjectStream *s) {
        return new EffectEvent(named("Aria"), list({"Borin"}), QString(), 1, 2, defences, s); });
    row("ongoing", 9, "Ongoing 5 Damage (fire): Rat (1)", false, [=](ObjectStream *s) {
        return new EffectEvent(nullptr, list({"Rat (1)"}), QStringLiteral("fire"), 3, EffectType::OngoingDamage, -5, s); });
    row("remove", 10, "Remove Dazed", true, [=](ObjectStream *s) {
        return new RemoveOnGoingEvent(named("Aria"), firstEffect("Aria", EffectType::Dazed), s); });
    row("remove at end of turn", 11, "End of Turn: Remove Dazed", true, [=](ObjectStream *s) {
        return new RemoveAtEndOfTurnEvent(named("Aria"), firstEffect("Aria", EffectType::Dazed), s); });
    row("remove at start of turn", 12, "Start of Turn: Remove Prone", false, [=](ObjectStream *s) {
        return new RemoveAtStartOfTurnEvent(named("Rat (1)"), firstEffect("Rat (1)", EffectType::Prone), s); });
    row("saved", 13, "Saved: Remove Slowed", true, [=](ObjectStream *s) {
        return new RemoveOnSaveEvent(named("Aria"), firstEffect("Aria", EffectType::Slowed), s); });
    row("remove at end of encounter", 14, "End of Encounter: Remove Slowed", true, [=](ObjectStream *s) {
        return new RemoveAtEndOfEncounterEvent(named("Aria"), firstEffect("Aria", EffectType::Slowed), s); });
    row("delay", 15, "* Delayed: Aria *", true, [=](ObjectStream *s) { return new DelayEvent(named("Aria"), s); });
    row("jump in", 16, "* Jump in: Rat (1) *", false, [=](ObjectStream *s) { return new JumpInEvent(named("Rat (1)"), s); });
    row("ready", 17, "* Ready: Rat (1) *", false, [=](ObjectStream *s) { return new ReadyEvent(named("Rat (1)"), s); });
    row("ready action", 18, "* Ready action: Aria *", true, [=](ObjectStream *s) { return new EndReadyEvent(named("Aria"), s); });
    row("died", 19, "Died: Rat (1)", true, [=](ObjectStream *s) { return new DiedEvent(named("Rat (1)"), s); });
    row("failed save", 20, "Failed Death Saving Throw: Aria", true, [=](ObjectStream *s) {
        return new FailedDeathSavingThrowEvent(named("Aria"), s); });
    row("action point", 21, "Use Action Point: Aria", true, [=](ObjectStream *s) { return new UseActionPointEvent(named("Aria"), s); });
    row("total defence", 22, "Total Defence: Rat (1)", true, [=](ObjectStream *s) { return new TotalDefenseEvent(named("Rat (1)"), s); });
    row("second wind", 23, "Second Wind: Aria", true, [=](ObjectStream *s) { return new SecondWindEvent(named("Aria"), s); });
    row("stabilize", 24, "Borin -> Stabilized: Aria", true, [=](ObjectStream *s) {
        return new StabilizeEvent(named("Borin"), named("Aria"), s); });
    row("short rest", 25, "Short Rest: Aria, Borin", true, [=](ObjectStream *s) {
        return new ShortRestEvent({{named("Aria"), 1, 7, 1}, {named("Borin"), 0, 0, 1}}, s); });
    row("extended rest", 26, "Extended Rest: Aria, Borin", true, [](ObjectStream *s) { return new ExtendedRestEvent({}, s); });
    row("monsters reset", 26, "Extended Rest: Rat (1)", true, [=](ObjectStream *s) {
        return new ExtendedRestEvent(list({"Rat (1)"}), s); });
    row("set encounter", 27, "Set Encounter: Cellar (Hidden)", false, [=](ObjectStream *s) {
        return new SetEncounterEvent({QString(), QStringLiteral("Cellar"), QString(), 3, 450, QString()}, CreatureList(list({"Rat (3)"})), true, s); });
    row("add monster", 28, "Add Monster: Ogre (1)", false, [=](ObjectStream *s) {
        return new AddMonsterEvent(CreatureList(list({"Ogre (1)"})), false, {}, s); });
    row("add encounter", 29, "Add Encounter: Cellar (Hidden)", false, [=](ObjectStream *s) {
        return new AddMonstersEvent(QStringLiteral("Cellar"), CreatureList(list({"Ogre (1)"})), true, {}, s); });
    row("set party", 30, "Set Party: Aria, Cleo", true, [=](ObjectStream *s) {
        return new SetPartyEvent(CreatureList(list({"Aria", "Cleo"})), false, {}, s); });
    row("add characters", 31, "Add Characters: Cleo (Hidden)", true, [=](ObjectStream *s) {
        return new AddCharactersEvent(CreatureList(list({"Cleo"})), true, {}, s); });
    row("hide", 32, "Hide Aria", false, [=](ObjectStream *s) { return new ShowHideEvent(named("Aria"), true, s); });
    row("show", 32, "Show Rat (1)", false, [=](ObjectStream *s) { return new ShowHideEvent(named("Rat (1)"), false, s); });
    row("first aid", 33, "Aria -> Second Wind (First Aid): Borin", true, [=](ObjectStream *s) {
        return new AdministerFirstAidEvent(named("Aria"), named("Borin"), s); });
    row("gain surge", 34, "Aria -> Gained Healing Surge: Aria", true, [=](ObjectStream *s) {
        return new GainHealingSurgeEvent(named("Aria"), s); });
    row("vitality", 35, "Changed Aria: Init +-2; Max HP 31; Curr HP 29; MAX HS 7; Curr HS 6; HS Value 5; Init AP 2; AP 3", true,
        [=](ObjectStream *s) { return new SetVitalityEvent({named("Aria"), -2, 31, 29, 7, 6, 5, 2, 3}, s); });
    row("vitality without initiative", 35, "Changed Aria: Init -", true, [=](ObjectStream *s) {
        CreatureVitality vitality = named("Aria")->liveVitality();
        vitality.initBonus = NotStated;
        return new SetVitalityEvent(vitality, s); });
    row("vitality unchanged", 35, "Changed Rat (1)", false, [=](ObjectStream *s) {
        return new SetVitalityEvent(named("Rat (1)")->liveVitality(), s); });
    row("removed", 36, "Removed: Aria, Borin", true, [=](ObjectStream *s) {
        return new RemoveCreaturesEvent(list({"Aria", "Borin"}), s); });
    row("removed with a monster", 36, "Removed: Aria, Rat (1)", false, [=](ObjectStream *s) {
        return new RemoveCreaturesEvent(list({"Aria", "Rat (1)"}), s); });
    row("removed current", 37, "Removed Current: Aria", true, [=](ObjectStream *s) { return new RemoveCurrentEvent(named("Aria"), s); });
    row("initiative down", 38, "Initiative +1: Rat (1)", false, [=](ObjectStream *s) {
        return new AdjustInitiativeEvent(list({"Rat (1)"}), 1, s); });
    row("initiative up", 38, "Initiative -1: Aria", true, [=](ObjectStream *s) {
        return new AdjustInitiativeEvent(list({"Aria"}), -1, s); });
    row("rename a character", 39, "Rename Aria -> Ariadne", false, [](ObjectStream *s) {
        return new RenameCreatureEvent(QStringLiteral("Aria"), QStringLiteral("Ariadne"), s); });
    row("rename a monster", 39, "Rename Rat (1) -> Rat (9)", true, [](ObjectStream *s) {
        return new RenameCreatureEvent(QStringLiteral("Rat (1)"), QStringLiteral("Rat (9)"), s); });
    row("power used", 40, "Rat (1): Used Bite", false, [=](ObjectStream *s) {
        return new PowerUsageChangedEvent(named("Rat (1)"), named("Rat (1)")->powerAt(0), 0, s); });
    row("alias", 41, "Rat (1): Show Alias: Beast", false, [=](ObjectStream *s) {
        return new SetAliasEvent(named("Rat (1)"), true, QStringLiteral("Beast"), s); });
    row("second wind used", 42, "Use Second Wind: Aria", true, [=](ObjectStream *s) { return new UseSecondWindEvent(named("Aria"), -1, s); });
    row("second wind gained", 42, "Gain Second Wind: Aria", true, [=](ObjectStream *s) { return new UseSecondWindEvent(named("Aria"), 1, s); });
    row("second wind otherwise", 42, "", true, [=](ObjectStream *s) { return new UseSecondWindEvent(named("Aria"), 5, s); });
    // clang-format on
}

// Written and read back, an event is the same.
void TestEvents::readsAndIsSeen()
{
    QFETCH(Make, make);
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(bool, seen);
    ObjectStream *stream = theHistory->getStream();
    const int start = stream->position();
    const std::unique_ptr<Event> written(make(stream));
    QCOMPARE(written->type(), type);
    QCOMPARE(written->text(), text);
    QCOMPARE(written->isVisibleToPlayers(), seen);
    QCOMPARE(written->startsEncounter(), type == EventType::StartEncounter);
    QCOMPARE(stream->position(), start);
    QCOMPARE(start + written->size(), stream->size());

    bool ok = true;
    const std::unique_ptr<Event> read(readEvent(stream, &ok));
    QVERIFY(read && ok);
    QCOMPARE(read->metaObject(), written->metaObject());
    QCOMPARE(read->type(), type);
    QCOMPARE(read->text(), text);
    QCOMPARE(read->isVisibleToPlayers(), seen);
    QCOMPARE(read->size(), written->size());
    QCOMPARE(stream->position(), start);
}

void TestEvents::unknownTypeEndsTheReading()
{
    ObjectStream *stream = theHistory->getStream();
    const int start = stream->position();
    bool ok = true;
    QVERIFY(!readEvent(stream, &ok));
    QVERIFY2(ok, "the end of the data is no error");
    for (int type : {43, -1}) {
        stream->seek(start);
        stream->markRecord();
        stream->writeInt(ID_EVENT_TYPE, type);
        stream->finishRecord();
        ok = true;
        QVERIFY(!readEvent(stream, &ok));
        QVERIFY(!ok);
    }
}

void TestEvents::startBuildsTheOrder()
{
    creature("Rat (2)")->setInitRoll(3);
    const auto event = made<StartEncounterEvent>(
        QList<CreatureInit> {{QStringLiteral("Borin"), 11, 4}, {QStringLiteral("Aria"), 11, 7}},
        QList<CreatureInit> {{QStringLiteral("Rat (1)"), 18, 1}, {QStringLiteral("Rat"), 5, 2}});
    event->redo();
    // On equal rolls the better bonus goes first.
    QCOMPARE(order(), QStringList({"Rat (1)", "Aria", "Borin", "Rat (2)"}));
    QCOMPARE(theEncounter->position(), (EncounterPosition {1, 0, {}}));
    QCOMPARE(creature("Rat (2)")->initRoll(), 5);
    event->undo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
    QCOMPARE(theEncounter->position(), EncounterPosition());
    QCOMPARE(creature("Rat (2)")->initRoll(), 3);
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
    const auto event = std::make_unique<NextTurnEvent>(theHistory->getStream(), false);
    event->redo();
    QCOMPARE(theEncounter->current(), creature("Borin"));
    QCOMPARE(creature("Aria")->turnCount(), 1);
    QCOMPARE(creature("Borin")->turnCount(), 0);
    QVERIFY(!creature("Borin")->isReadied());
    event->undo();
    QCOMPARE(theEncounter->current(), creature("Aria"));
    QCOMPARE(creature("Aria")->turnCount(), 0);
    QVERIFY(creature("Borin")->isReadied());
}

void TestEvents::turnRaisesTheRound()
{
    theEncounter->setPosition({2, 3, {}});
    const auto event = std::make_unique<NextTurnEvent>(theHistory->getStream(), false);
    event->redo();
    QCOMPARE(theEncounter->position(), (EncounterPosition {3, 0, {}}));
    event->undo();
    QCOMPARE(theEncounter->position(), (EncounterPosition {2, 3, {}}));
}

void TestEvents::turnOfAHiddenCreatureIsNotShown()
{
    theEncounter->setPosition({1, 1, {}});
    creature("Rat (1)")->setHidden(true);
    QVERIFY(!NextTurnEvent(theHistory->getStream(), false).isVisibleToPlayers());
    QVERIFY(!DiedEvent(creature("Rat (1)"), theHistory->getStream()).isVisibleToPlayers());
}

void TestEvents::readyActionKeepsTheTurn()
{
    start();
    creature("Rat (2)")->setReadied(true);
    const auto event = made<EndReadyEvent>(creature("Rat (2)"));
    event->redo();
    QCOMPARE(order(), QStringList({"Rat (2)", "Aria", "Borin", "Rat (1)"}));
    QCOMPARE(theEncounter->current(), creature("Aria"));
    QVERIFY(!creature("Rat (2)")->isReadied());
    event->undo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
    QCOMPARE(theEncounter->current(), creature("Aria"));
    QVERIFY(creature("Rat (2)")->isReadied());
}

void TestEvents::jumpInTakesTheTurn()
{
    theEncounter->setPosition({1, 2, {}});
    creature("Aria")->setDelayed(true);
    const auto event = made<JumpInEvent>(creature("Aria"));
    event->redo();
    QCOMPARE(order(), QStringList({"Borin", "Rat (1)", "Aria", "Rat (2)"}));
    QCOMPARE(theEncounter->current(), creature("Aria"));
    QCOMPARE(creature("Rat (1)")->turnCount(), 1);
    QVERIFY(!creature("Aria")->isDelayed());
    event->undo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
    QCOMPARE(theEncounter->current(), creature("Rat (1)"));
    QCOMPARE(creature("Rat (1)")->turnCount(), 0);
    QVERIFY(creature("Aria")->isDelayed());
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

// The first in the order dies in its own turn: the turn wraps to the last of the round before.
void TestEvents::deathAndItsWayBack()
{
    theEncounter->setPosition({2, 0, {}});
    creature("Aria")->setCurrHP(-40);
    const auto event = made<DiedEvent>(creature("Aria"));
    event->redo();
    QCOMPARE(order(), QStringList({"Borin", "Rat (1)", "Rat (2)"}));
    QCOMPARE(theEncounter->position(), (EncounterPosition {1, 2, {creature("Aria")}}));
    event->undo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
    QCOMPARE(theEncounter->position(), (EncounterPosition {2, 0, {}}));
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
    event->redo();
    QCOMPARE(aria->currHP(), 0);
    QCOMPARE(aria->currHS(), 3);
    event->undo();
    QCOMPARE(aria->currHP(), -5);
    QCOMPARE(aria->currHS(), 2);
}

void TestEvents::failedSavesCountFromTheSnapshot()
{
    creature("Aria")->setFailedDeathSaves(1);
    const auto event = made<FailedDeathSavingThrowEvent>(creature("Aria"));
    event->redo();
    event->undo();
    event->redo();
    QCOMPARE(creature("Aria")->failedDeathSaves(), 2);
    event->redo();
    QCOMPARE(creature("Aria")->failedDeathSaves(), 2);
}

// Without a list the living characters rest who are there then.
void TestEvents::restOfTheParty()
{
    for (const char *name : {"Aria", "Borin", "Cleo", "Rat (1)"})
        creature(name)->setCurrHP(1);
    const auto written = made<ExtendedRestEvent>(QList<Creature *>());
    TestFight::setRoster(
        {QStringLiteral("Aria"), QStringLiteral("Cleo"), QStringLiteral("Rat (1)")});
    bool ok = true;
    const std::unique_ptr<Event> read(readEvent(theHistory->getStream(), &ok));
    read->redo();
    QCOMPARE(creature("Aria")->currHP(), 30);
    QCOMPARE(creature("Cleo")->currHP(), 25);
    QCOMPARE(creature("Borin")->currHP(), 1);
    QCOMPARE(creature("Rat (1)")->currHP(), 1);
    read->undo();
    QCOMPARE(creature("Cleo")->currHP(), 1);
}

// A rest leaves the shadows at 0. As long as nobody edits a creature, no later event may take that
// for a change made outside.
void TestEvents::nothingIsLoggedBehindARest()
{
    const auto log = [](Event *event) { theHistory->doEvent(event); };
    const CreatureList party(TestFight::creatures({"Aria", "Borin"}));
    log(new SetPartyEvent(party, false, itemsOf(party), theHistory->getStream()));
    theEncounter->checkVitality(theHistory);
    log(new ExtendedRestEvent({}, theHistory->getStream()));
    const CreatureList rats(TestFight::creatures({"Rat (1)", "Rat (2)"}));
    log(new SetEncounterEvent({}, rats, false, theHistory->getStream()));
    const int count = theHistory->position();
    theEncounter->checkVitality(theHistory);
    QCOMPARE(theHistory->position(), count);
    // An editor's change is logged all the same.
    creature("Aria")->setField(&CreatureData::maxHP, 31);
    theEncounter->checkVitality(theHistory);
    QVERIFY(theHistory->position() > count);
}

void TestEvents::secondWindPutsItsEffectOn()
{
    Creature *aria = creature("Aria");
    aria->setCurrHP(10);
    {
        const auto event = made<SecondWindEvent>(aria);
        event->redo();
        QCOMPARE(aria->currHP(), 10 + aria->hsValue());
        QCOMPARE(aria->effectCount(), 1);
        QCOMPARE(aria->effectAt(0)->type(), int(EffectType::SecondWind));
        QVERIFY(aria->secondWindUsed());
        event->undo();
        QCOMPARE(aria->effectCount(), 0);
        QVERIFY(!aria->secondWindUsed());
        event->redo();
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
    QCOMPARE(event->text(), QStringLiteral("Changed Aria: Max HP 40; Curr HP 22"));
    event->redo();
    QCOMPARE(aria->maxHP(), 40);
    QCOMPARE(aria->shadowVitality(), vitality);
    event->undo();
    QCOMPARE(aria->maxHP(), 30);
    QCOMPARE(aria->currHP(), 22);
    QCOMPARE(aria->shadowVitality(), shadow);
}

void TestEvents::signedAmounts_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("amount");
    QTest::addColumn<int>("storedType");
    QTest::addColumn<int>("storedAmount");
    QTest::newRow("ongoing damage") << 20 << -5 << 20 << 5;
    QTest::newRow("regeneration") << 20 << 5 << 21 << 5;
    QTest::newRow("nothing is regeneration") << 20 << 0 << 21 << 0;
    QTest::newRow("vulnerable") << 29 << -3 << 29 << 3;
    QTest::newRow("resist") << 29 << 3 << 28 << 3;
    QTest::newRow("penalty") << 0 << -2 << 22 << 2;
    QTest::newRow("bonus") << 0 << 2 << 23 << 2;
    QTest::newRow("least number") << 20 << INT_MIN << 20 << INT_MAX;
    QTest::newRow("others as given") << 30 << -4 << 30 << -4;
}

// Type 0 stands for the form with attributes.
void TestEvents::signedAmounts()
{
    QFETCH(int, type);
    QFETCH(int, amount);
    const QList<Creature *> targets = {creature("Aria"), creature("Rat (1)")};
    std::unique_ptr<EffectEvent> event;
    if (type == 0)
        event = made<EffectEvent>(nullptr, targets, QString(), 4, amount,
                                  EffectedAttributes {.ac = true});
    else
        event = made<EffectEvent>(nullptr, targets, QString(), 4, type, amount);
    event->redo();
    for (Creature *target : targets) {
        QCOMPARE(target->effectCount(), 1);
        QTEST(target->effectAt(0)->type(), "storedType");
        QTEST(target->effectAt(0)->amount(), "storedAmount");
        QCOMPARE(target->effectAt(0)->target(), target);
    }
    event->undo();
    QCOMPARE(targets.at(1)->effectCount(), 0);
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
    bool ok = true;
    const std::unique_ptr<Event> read(readEvent(theHistory->getStream(), &ok));
    read->redo();
    QCOMPARE(aria->effectCount(), 2);
    QCOMPARE(aria->indexOfEffect(slowed), -1);
    read->undo();
    QCOMPARE(aria->indexOfEffect(slowed), 1);
}

void TestEvents::removalWithoutEffect()
{
    Creature *aria = creature("Aria");
    made<RemoveOnGoingEvent>(aria, nullptr);
    bool ok = true;
    const std::unique_ptr<Event> plain(readEvent(theHistory->getStream(), &ok));
    plain->redo();
    plain->undo();
    QCOMPARE(aria->effectCount(), 0);
    QCOMPARE(plain->text(), QStringLiteral("Unknown"));
    QVERIFY(!plain->isVisibleToPlayers());
    QCOMPARE(made<RemoveAtEndOfTurnEvent>(aria, nullptr)->text(),
             QStringLiteral("End of Turn: Remove Unknown"));
}

void TestEvents::powerUse_data()
{
    QTest::addColumn<QString>("power");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("usage");
    QTest::addColumn<int>("after");
    QTest::addColumn<QString>("text");
    const QString bite = QStringLiteral("Bite");
    QTest::newRow("used") << bite << 0 << 0 << 1 << "Rat (1): Used Bite";
    QTest::newRow("used again") << bite << 4 << 0 << 3 << "Rat (1): Used Bite";
    QTest::newRow("used twice in a row") << bite << 1 << 0 << 1 << "Rat (1): Used Bite";
    QTest::newRow("unused") << bite << 1 << 1 << 2 << "Rat (1): Unused Bite";
    QTest::newRow("die too low") << bite << 1 << 5 << 1 << "Recharge 4: Rat (1) - Bite";
    QTest::newRow("die high enough") << bite << 1 << 6 << 2 << "Recharge 5: Rat (1) + Bite";
    QTest::newRow("no such usage") << bite << 1 << 8 << 1 << "";
    // The limit of an unknown power is 2.
    QTest::newRow("no such power") << "Howl" << 0 << 2 << 0 << "Recharge 1: Rat (1) - Howl";
}

void TestEvents::powerUse()
{
    QFETCH(QString, power);
    QFETCH(int, before);
    QFETCH(int, usage);
    Creature *rat = creature("Rat (1)");
    Power *bite = rat->powerByName(QStringLiteral("Bite"));
    bite->usageState = before;
    Power named;
    named.name = power;
    const auto event = made<PowerUsageChangedEvent>(rat, &named, usage);
    QTEST(event->text(), "text");
    event->redo();
    QTEST(bite->usageState, "after");
    event->undo();
    QCOMPARE(bite->usageState, before);
}

void TestEvents::additionsFindTheirPlace_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("place");
    QTest::newRow("monster before the start") << 28 << -1 << 4;
    QTest::newRow("encounter before the start") << 29 << -1 << 4;
    QTest::newRow("character before the start") << 31 << -1 << 0;
    QTest::newRow("monster in the fight") << 28 << 1 << 2;
    QTest::newRow("character in the fight") << 31 << 1 << 2;
}

void TestEvents::additionsFindTheirPlace()
{
    QFETCH(int, type);
    QFETCH(int, current);
    theEncounter->setPosition({current < 0 ? 0 : 1, current, {}});
    Creature *added = type == 31 ? creature("Cleo") : creature("Ogre (1)");
    const QList<CreatureItem> oldItems = {added->item()};
    added->setItem({added, 17, 99});
    const CreatureList list {QList<Creature *> {added}};
    if (type == 28)
        made<AddMonsterEvent>(list, true, oldItems);
    else if (type == 29)
        made<AddMonstersEvent>(QStringLiteral("Cave"), list, true, oldItems);
    else
        made<AddCharactersEvent>(list, true, oldItems);
    added->setItem(oldItems.first());
    added->setCurrHP(1);

    // As in a replay, where the creature comes fresh from its file.
    bool ok = true;
    const std::unique_ptr<Event> event(readEvent(theHistory->getStream(), &ok));
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
}

void TestEvents::encounterReplacesTheMonsters()
{
    const EncounterEntry cellar {
        QStringLiteral("cellar.txt"), QStringLiteral("Cellar"), QStringLiteral("Damp."), 3, 450,
        QStringLiteral("Town")};
    const auto event = made<SetEncounterEvent>(
        cellar, CreatureList(TestFight::creatures({"Rat (10)", "Rat (9)", "Ogre (1)"})), false);
    event->redo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Ogre (1)", "Rat (9)", "Rat (10)"}));
    QCOMPARE(theEncounter->name(), QStringLiteral("Cellar"));
    QCOMPARE(theEncounter->level(), 3);
    QCOMPARE(theEncounter->xp(), 450);
    event->undo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
    QCOMPARE(theEncounter->name(), QString());
}

void TestEvents::partyReplacesTheCharacters()
{
    const auto event = made<SetPartyEvent>(CreatureList(TestFight::creatures({"Cleo", "Aria"})),
                                           false, QList<CreatureItem>());
    event->redo();
    QCOMPARE(order(), QStringList({"Aria", "Cleo", "Rat (1)", "Rat (2)"}));
    event->undo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
}

void TestEvents::renameInTheFight()
{
    Creature *rat = creature("Rat (1)");
    rat->setNameBefore(QStringLiteral("1"));
    const auto event =
        made<RenameCreatureEvent>(QStringLiteral("Rat (1)"), QStringLiteral("Rat (7)"));
    event->redo();
    QCOMPARE(rat->displayName(), QStringLiteral("Rat (7)"));
    QCOMPARE(rat->nameBefore(), QStringLiteral("7"));
    QCOMPARE(creature("Rat (7)"), rat);
    event->undo();
    QCOMPARE(rat->displayName(), QStringLiteral("Rat (1)"));
    QCOMPARE(rat->nameBefore(), QStringLiteral("1"));

    // A name that another creature of the fight has stays with it.
    made<RenameCreatureEvent>(QStringLiteral("Rat (1)"), QStringLiteral("Rat (2)"))->redo();
    QCOMPARE(order(), QStringList({"Aria", "Borin", "Rat (1)", "Rat (2)"}));
    // Who isn't in the fight isn't renamed.
    Creature *ogre = creature("Ogre (1)");
    made<RenameCreatureEvent>(QStringLiteral("Ogre (1)"), QStringLiteral("Ogre (2)"))->redo();
    QCOMPARE(ogre->displayName(), QStringLiteral("Ogre (1)"));
}

// The Character Creator has renamed already; the log is told once, and steps back with the name.
void TestEvents::renameThatTheHistoryLearnsOf()
{
    Creature *aria = creature("Aria");
    aria->setNameBefore(QStringLiteral("Aria"));
    aria->rename(QStringLiteral("Ariadne"));
    theEncounter->markVitalityStale();
    theEncounter->checkVitality(theHistory);
    QCOMPARE(theHistory->eventCount(), 1);
    theEncounter->markVitalityStale();
    theEncounter->checkVitality(theHistory);
    QCOMPARE(theHistory->eventCount(), 1);
    theHistory->stepBack();
    QCOMPARE(aria->name(), QStringLiteral("Aria"));
    theHistory->stepForward();
    QCOMPARE(aria->name(), QStringLiteral("Ariadne"));
}

// The log of a fight in which a character was renamed and saved, read again: its first records name
// a character that no file has any more.
void TestEvents::renameJoinsAStandIn()
{
    Creature *standIn = creature("Old Cleo");
    QVERIFY(standIn->isMissing());
    TestFight::setRoster({QStringLiteral("Old Cleo"), QStringLiteral("Rat (1)")});
    Creature *cleo = creature("Cleo");
    const int count = theCharacters->count();
    const auto event =
        made<RenameCreatureEvent>(QStringLiteral("Old Cleo"), QStringLiteral("Cleo"));
    event->redo();
    QCOMPARE(creature("Cleo"), standIn);
    QVERIFY(!standIn->isMissing());
    QVERIFY(!standIn->isModified());
    QCOMPARE(standIn->fileName(), cleo->fileName());
    QCOMPARE(standIn->maxHP(), 25);
    QCOMPARE(theCharacters->count(), count);
    QVERIFY(theCharacters->indexOf(standIn) >= 0);
    event->undo();
    QCOMPARE(standIn->displayName(), QStringLiteral("Old Cleo"));
}

void TestEvents::aliasTexts()
{
    Creature *rat = creature("Rat (1)");
    rat->setAlias(QStringLiteral("Beast"));
    const auto text = [&](bool show, const char *alias) {
        return made<SetAliasEvent>(rat, show, QString::fromUtf8(alias))->text();
    };
    QCOMPARE(text(true, "Thing"), QStringLiteral("Rat (1): Show Alias: Thing"));
    QCOMPARE(text(false, "Beast"), QStringLiteral("Rat (1): Hide Alias"));
    QCOMPARE(text(false, "Thing"), QStringLiteral("Rat (1): Hide Alias: Thing"));
    QCOMPARE(text(true, ""), QStringLiteral("Rat (1): Remove Alias"));
    const auto event = made<SetAliasEvent>(rat, true, QStringLiteral("Thing"));
    event->redo();
    QCOMPARE(rat->alias(), QStringLiteral("Thing"));
    QVERIFY(rat->aliasMode() != 0);
    event->undo();
    QCOMPARE(rat->alias(), QStringLiteral("Beast"));
    QCOMPARE(rat->aliasMode(), 0);
}

MORVANE_TEST_MAIN(QGuiApplication, TestEvents)
#include "tst_events.moc"
