// What events say in the history, who sees them, and what they do where that is easily got wrong.
#include <QGuiApplication>
#include <QRegularExpression>
#include <functional>

#include "characters.h"
#include "creature.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "eventfactory.h"
#include "history.h"
#include "objectstream.h"
#include "outsidechanges.h"
#include "rosterevents.h"
#include "tables.h"
#include "testfight.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

using namespace Qt::StringLiterals;

namespace {

// The lines that differ, each with what it tells about and its new words.
QString changedWords(const QString &before, const QString &after)
{
    const QStringList old = before.split(u'\n');
    const QStringList now = after.split(u'\n');
    QStringList found;
    for (qsizetype i = 0; i < now.size(); ++i) {
        if (now[i] == old.value(i))
            continue;
        if (i == 0) {
            found << now[i].section(u": "_s, 1); // the order
            continue;
        }
        const QStringList was = old.value(i).split(u' ');
        const QStringList is = now[i].split(u' ');
        QString line = is[0] + (is[1].startsWith(u'(') ? is[1] : QString());
        for (qsizetype word = 1; word < is.size(); ++word) {
            if (is[word] == was.value(word))
                continue;
            const bool isNamed = word >= was.size() || is[word].contains(u'=');
            line += u' ' + (isNamed ? is[word] : is[word - 1] + u' ' + is[word]);
        }
        found << line;
    }
    return found.join(u"; ");
}

} // namespace

class TestEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void changes_data() { useTable(u"eventrules"_s, {"before", "event", "text", "changes"}); }
    void changes();
    void oldStartWithoutVitality();
    void nothingIsLoggedBehindARest();
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
    static QList<Creature *> named(const QString &names);
    static void prepare(const QString &step);
    static std::unique_ptr<Event> make(const QString &command);
    static Event *makeArrival(const QString &kind, Creature *creature);

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

// "Aria,Rat1" as the table names them.
QList<Creature *> TestEvents::named(const QString &names)
{
    static const QRegularExpression number(u"(\\d+)$"_s);
    QList<Creature *> found;
    for (QString name : names.split(u','))
        found << TestFight::creature(name.replace(number, u" (\\1)"_s));
    return found;
}

// "turn round index", or the name of a creature, what changes, and to what.
void TestEvents::prepare(const QString &step)
{
    static const QMap<QString, std::function<void(Creature *, int)>> setters {
        {u"hp"_s, &Creature::setCurrHP},
        {u"surges"_s, &Creature::setCurrHS},
        {u"temp"_s, &Creature::setTempHP},
        {u"fails"_s, &Creature::setFailedDeathSaves},
        {u"hidden"_s, &Creature::setHidden},
        {u"delayed"_s, &Creature::setDelayed},
        {u"readied"_s, &Creature::setReadied},
        {u"bite"_s,
         [](Creature *who, int state) { who->powerByName(u"Bite"_s)->usageState = state; }}};
    const QStringList words = step.split(u' ');
    if (words[0] == u"turn")
        theEncounter->setPosition({words[1].toInt(), words[2].toInt(), {}});
    else
        setters.value(words[1])(named(words[0])[0], words[2].toInt());
}

// Rolled 17 and 99 when it was added, and as it is when nobody knows of that.
Event *TestEvents::makeArrival(const QString &kind, Creature *creature)
{
    ObjectStream *log = theHistory->getStream();
    const QList<CreatureItem> old {creature->item()};
    creature->setItem({creature, 17, 99});
    const CreatureList list(QList<Creature *> {creature});
    Event *event = nullptr;
    if (kind == u"monster")
        event = new AddMonsterEvent(list, true, old, log);
    else if (kind == u"encounter")
        event = new AddMonstersEvent(u"Cave"_s, list, true, old, log);
    else
        event = new AddCharactersEvent(list, true, old, log);
    creature->setItem(old.first());
    creature->setCurrHP(1);
    return event;
}

// A word for the kind, who it befalls, and numbers.
std::unique_ptr<Event> TestEvents::make(const QString &command)
{
    const QStringList words = command.split(u' ');
    const QList<Creature *> all = named(words.value(1, u"Aria"_s));
    Creature *who = all.first();
    const QList<int> n = numbers(words.mid(2)) + QList<int>(8);
    ObjectStream *log = theHistory->getStream();
    const QMap<QString, std::function<Event *()>> makers {
        {u"next"_s, [&] { return new NextTurnEvent(log, false); }},
        {u"readyAction"_s, [&] { return new EndReadyEvent(who, log); }},
        {u"jumpIn"_s, [&] { return new JumpInEvent(who, log); }},
        {u"died"_s, [&] { return new DiedEvent(who, log); }},
        {u"temp"_s, [&] { return new SetTempHPEvent(all, n[0], log); }},
        {u"heal"_s, [&] { return new HealEvent(nullptr, who, n[0], n[1], log); }},
        {u"gainSurge"_s, [&] { return new GainHealingSurgeEvent(who, log); }},
        {u"secondWind"_s, [&] { return new SecondWindEvent(who, log); }},
        {u"useWind"_s, [&] { return new UseSecondWindEvent(who, n[0], log); }},
        {u"fail"_s, [&] { return new FailedDeathSavingThrowEvent(who, log); }},
        {u"vitality"_s,
         [&] {
             return new SetVitalityEvent({who, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7]},
                                         log);
         }},
        {u"effect"_s, [&] { return new EffectEvent(nullptr, all, QString(), 4, n[0], n[1], log); }},
        {u"modifier"_s,
         [&] { return new EffectEvent(who, all, QString(), 4, n[0], {.ac = true}, log); }},
        {u"cover"_s, [&] { return new EffectEvent(who, all, u"a barrel"_s, 4, n[0], log); }},
        {u"power"_s,
         [&] {
             Power named;
             named.name = words[2];
             return new PowerUsageChangedEvent(who, &named, n[1], log);
         }},
        {u"remove"_s, [&] { return new RemoveCreaturesEvent(all, log); }},
        {u"adjust"_s, [&] { return new AdjustInitiativeEvent(all, n[0], log); }}};
    const auto maker = makers.value(words[0]);
    return std::unique_ptr<Event>(maker ? maker() : makeArrival(words[0], who));
}

// Read back as in a replay, an event says and does the same, and can be taken back.
void TestEvents::changes()
{
    QFETCH(const QString, before);
    QFETCH(const QString, event);
    for (const QString &step : before.split(u';', Qt::SkipEmptyParts))
        prepare(step);
    const auto state = [] {
        return TestFight::stateText(named(u"Aria,Borin,Cleo,Rat1,Rat2,Ogre1"_s),
                                    TestFight::TurnMarks);
    };
    const std::unique_ptr<Event> written = make(event);
    const QString old = state(); // a reader hands out the rolls of who is added
    bool ok = true;
    std::unique_ptr<Event> read(readEvent(theHistory->getStream(), &ok));
    QVERIFY(read && ok);
    for (const auto &each : {written.get(), read.get()})
        QTEST((each->isVisibleToPlayers() ? u"+ "_s : u"- "_s).append(each->text()), "text");
    read->redo();
    read->undo();
    QCOMPARE(state(), old);
    read->redo();
    QTEST(changedWords(old, state()), "changes");
    read.reset();
    for (const Creature *creature : theEncounter->creatures())
        QCOMPARE(creature->effectCount(), 0); // the event owned them
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
