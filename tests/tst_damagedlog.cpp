// Logs with every kind of damage: whatever they hold, they load, go back to the start and forward
// again.
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <algorithm>
#include <random>

#include "creature.h"
#include "datatable.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "history.h"
#include "objectstream.h"
#include "paths.h"
#include "rosterevents.h"
#include "testfight.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

template <typename EventClass, typename... Arguments>
void add(Arguments &&...arguments)
{
    theHistory->doEvent(
        new EventClass(std::forward<Arguments>(arguments)..., theHistory->getStream()));
}

template <typename EventClass>
void addBare()
{
    theHistory->doEvent(new EventClass(theHistory->getStream(), false));
}

// 50 events, each kind among them.
void fightOnce()
{
    Creature *aria = TestFight::creature(QStringLiteral("Aria"));
    Creature *borin = TestFight::creature(QStringLiteral("Borin"));
    Creature *rat = TestFight::creature(QStringLiteral("Rat (1)"));
    Creature *ogre = TestFight::creature(QStringLiteral("Ogre (1)"));
    const auto listOf = [](Creature *creature) { return QList<Creature *> {creature}; };
    const CreatureList rats(listOf(rat));

    add<SetPartyEvent>(CreatureList(listOf(aria)), false, QList<CreatureItem> {aria->item()});
    add<AddCharactersEvent>(CreatureList(listOf(borin)), false, QList<CreatureItem>());
    add<SetEncounterEvent>(
        EncounterEntry {QString(), QStringLiteral("E"), QString(), 1, 9, QString()}, rats, false);
    add<RenameCreatureEvent>(QStringLiteral("Rat (1)"), QStringLiteral("Rat (2)"));
    add<StartEncounterEvent>(QList<CreatureInit> {{QStringLiteral("Aria"), 9, 1}},
                             QList<CreatureInit> {{QStringLiteral("Rat"), 15, 2}});
    add<DamageEvent>(rat, aria, 4);
    addBare<NextTurnEvent>();
    add<DelayEvent>(aria);
    addBare<NextTurnEvent>();
    add<EffectEvent>(borin, listOf(rat), QStringLiteral("x"), EffectEnd::SaveEnds,
                     EffectType::OngoingDamage, -5);
    add<JumpInEvent>(aria);
    add<PowerUsageChangedEvent>(rat, rat->powerAt(0), 0);
    add<ReadyEvent>(aria);
    addBare<NextTurnEvent>();
    add<EndReadyEvent>(aria);
    add<OnGoingDamageEvent>(nullptr, rat, 5);
    add<RemoveOnSaveEvent>(rat, rat->effectAt(0));
    add<PowerUsageChangedEvent>(rat, rat->powerAt(0), 6);
    add<EffectEvent>(nullptr, listOf(aria), QString(), EffectEnd::EndOfEncounter, 2,
                     EffectedAttributes {.ac = true});
    add<EffectEvent>(rat, listOf(aria), QString(), EffectEnd::StartOfOriginsTurn,
                     EffectType::Slowed);
    add<RemoveAtStartOfTurnEvent>(aria, aria->effectAt(1));
    add<HealEvent>(borin, aria, 1, 7);
    add<SetTempHPEvent>(listOf(borin), 5);
    add<AddMonsterEvent>(CreatureList(listOf(ogre)), false, QList<CreatureItem>());
    add<ShowHideEvent>(ogre, true);
    add<SetAliasEvent>(ogre, true, QStringLiteral("Z"));
    addBare<NextTurnEvent>();
    add<TotalDefenseEvent>(borin);
    add<RemoveAtEndOfTurnEvent>(borin, borin->effectAt(0));
    add<DamageEvent>(ogre, borin, 30);
    add<FailedDeathSavingThrowEvent>(borin);
    add<StabilizeEvent>(aria, borin);
    add<AdministerFirstAidEvent>(aria, borin);
    add<SecondWindEvent>(aria);
    add<RemoveOnGoingEvent>(aria, aria->effectAt(0));
    add<UseActionPointEvent>(aria);
    add<UseSecondWindEvent>(borin, 1);
    add<GainHealingSurgeEvent>(borin);
    add<RegenerationEvent>(rat, 3);
    add<AdjustInitiativeEvent>(listOf(rat), 1);
    add<DamageEvent>(aria, rat, 40);
    add<DiedEvent>(rat);
    add<RemoveCurrentEvent>(theEncounter->current());
    add<RemoveAtEndOfEncounterEvent>(aria, aria->effectAt(0));
    addBare<StopEncounterEvent>();
    add<ShortRestEvent>(QList<RestedCreature> {{aria, 1, 7, 1}});
    add<ExtendedRestEvent>(QList<Creature *>());
    add<SetVitalityEvent>(borin->liveVitality());
    add<AddMonstersEvent>(QStringLiteral("E"), rats, true, QList<CreatureItem>());
    add<RemoveCreaturesEvent>(rat);
}

void damageAria()
{
    if (theHistory->getStream())
        add<DamageEvent>(nullptr, TestFight::creature(QStringLiteral("Aria")), 1);
}

// One to three things that disks, copies and other programs do to a file.
QByteArray mutated(QByteArray log, std::mt19937 &random)
{
    const auto upTo = [&](qsizetype most) {
        return std::uniform_int_distribution<qsizetype>(0, qMax<qsizetype>(most, 0))(random);
    };
    for (qsizetype times = 1 + upTo(2); times > 0 && !log.isEmpty(); --times) {
        const qsizetype at = upTo(log.size() - 1);
        const qsizetype count = upTo(qMin<qsizetype>(log.size() - at, upTo(1) ? 20 : 600));
        switch (upTo(7)) {
        case 0:
        case 1:
            log[at] = char(log.at(at) ^ (1 << upTo(7)));
            break;
        case 2:
            log[at] = char(upTo(255));
            break;
        case 3:
            log.replace(at, count, QByteArray(count, '\0'));
            break;
        case 4:
            std::generate_n(log.begin() + at, count, [&] { return char(upTo(255)); });
            break;
        case 5:
            log.remove(at, count);
            break;
        case 6:
            log.insert(upTo(log.size()), log.mid(at, count));
            break;
        default:
            log.truncate(at);
            break;
        }
    }
    return log;
}

} // namespace

class TestDamagedLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void mutatedLogs();
    void tellsWhatIsLost_data();
    void tellsWhatIsLost();
    void sizesAreNotBelieved_data();
    void sizesAreNotBelieved();
    void missingListsCostNoOtherEvent_data();
    void missingListsCostNoOtherEvent();
    void unknownFieldsAreSkipped();

private:
    void load(const QByteArray &log);
    // From the file, where it is written on.
    bool start(const QByteArray &log);
    QByteArray file() const { return m_fight->folder().read(QStringLiteral("history.log")); }
    // Of the events.
    static QList<int> types();
    // Where the events of the undamaged log end.
    QList<qsizetype> m_ends;
    // False when the way back doesn't end at the start.
    bool walk() const;

    std::unique_ptr<TestFight> m_fight;
    QByteArray m_log;
    QByteArray m_header;
};

void TestDamagedLog::initTestCase()
{
    m_fight = std::make_unique<TestFight>();
    theHistory->getStream();
    m_header = m_fight->folder().read(QStringLiteral("history.log"));
    m_header.chop(2); // the end marker
    fightOnce();
    QCOMPARE(theHistory->eventCount(), 50);
    m_log = file();
    for (int i = 0; i < theHistory->eventCount(); ++i)
        m_ends << theHistory->eventOffset(i) + theHistory->eventAt(i)->size();
}

void TestDamagedLog::init()
{
    failOnWarnings();
}

void TestDamagedLog::cleanupTestCase()
{
    m_fight.reset();
}

// From memory, where nothing is written back.
void TestDamagedLog::load(const QByteArray &log)
{
    m_fight->forget();
    theHistory->setDeviceFactory([log](const QString &) {
        auto *device = new QBuffer;
        device->setData(log);
        device->open(QIODevice::ReadOnly);
        return device;
    });
    theHistory->load();
}

bool TestDamagedLog::walk() const
{
    const int last = theHistory->eventCount() - 1;
    for (const int position : {-1, last}) {
        theHistory->moveTo(position);
        for (int i = 0; i <= last; ++i)
            static_cast<void>(theHistory->eventText(i));
        static_cast<void>(theHistory->recentVisibleEvents(3));
        if (theHistory->position() != position)
            return false;
        if (position < 0 && (theEncounter->count() > 0 || theEncounter->isRunning()))
            return false;
    }
    return true;
}

bool TestDamagedLog::start(const QByteArray &log)
{
    m_fight->forget();
    QFile file(historyPath());
    if (!file.open(QIODevice::WriteOnly) || file.write(log) != log.size())
        return false;
    file.close();
    theHistory->setDeviceFactory({});
    return theHistory->load();
}

QList<int> TestDamagedLog::types()
{
    QList<int> result;
    for (int i = 0; i < theHistory->eventCount(); ++i)
        result << theHistory->eventAt(i)->type();
    return result;
}

// Whatever happened to a log: the events ahead of it are there, and so is the next command at the
// next start.
void TestDamagedLog::mutatedLogs()
{
    std::mt19937 random(RandomTest::seed());
    const int count = RandomTest::count(1500);
    for (int i = 0; i < count; ++i) {
        const QByteArray log = mutated(m_log, random);
        const auto same = std::mismatch(m_log.cbegin(), m_log.cend(), log.cbegin(), log.cend());
        const qsizetype intact = same.first - m_log.cbegin();
        const auto ahead = std::upper_bound(m_ends.cbegin(), m_ends.cend(), intact);
        const std::string place =
            "--seed " + std::to_string(RandomTest::seed()) + ", log " + std::to_string(i);
        const char *const where = place.c_str();

        const bool known = start(log);
        QList<int> expected = types();
        QVERIFY2(expected.size() >= ahead - m_ends.cbegin(), where);
        for (auto end = m_ends.cbegin(); end != ahead; ++end) {
            const int index = int(end - m_ends.cbegin());
            QVERIFY2(theHistory->eventOffset(index) + theHistory->eventAt(index)->size() == *end,
                     where);
        }
        QVERIFY2(walk(), where);
        damageAria();
        // Behind an unknown event nothing is found again.
        if (known)
            expected = types();
        start(file());
        QVERIFY2(types() == expected, where);
        QDir(m_fight->folder().file(QStringLiteral("History"))).removeRecursively();
    }
    // Nothing of all that has rubbed off.
    load(m_log);
    QCOMPARE(theHistory->eventCount(), 50);
}

void TestDamagedLog::tellsWhatIsLost_data()
{
    addColumns<QByteArray, int, int, int>({"log", "events", "lost", "bytes"});
    const auto row = [&](const char *name, const QByteArray &log, int events, int lost,
                         qsizetype bytes) {
        QTest::newRow(name) << log << events << lost << int(bytes);
    };
    const QByteArray old = m_log.sliced(m_ends.at(20) + 1);
    const QByteArray clean = m_log.first(m_ends.at(20)) + QByteArray(2, '\0');
    QByteArray junk(300, '\x99');
    // From the middle of event 20 into event 30.
    const qsizetype hole = m_ends.at(19) + 8;
    const qsizetype holeEnd = m_ends.at(29) + 5;
    const qsizetype behind = m_log.size() - 2 - m_ends.at(19);
    QByteArray zeroed = m_log;
    zeroed.replace(hole, holeEnd - hole, QByteArray(holeEnd - hole, '\0'));
    QByteArray filled = m_log;
    filled.replace(hole, holeEnd - hole, QByteArray(holeEnd - hole, '\xfe'));
    QByteArray swallowing = m_log;
    swallowing[m_ends.at(4) - 3] = '\0';

    row("clean", m_log, 50, 0, 0);
    row("old records behind the end", clean + old, 21, 0, 0);
    row("killed write", m_log.first(m_ends.at(20)) + "\x2c\x01\xff" + old, 21, 0, 0);
    row("cut short", m_log.first(m_ends.at(20) - 4), 20, 0, 0);
    row("zeroes in the middle", zeroed, 20, 19, behind);
    row("junk in the middle", filled, 20, 19, behind);
    row("junk in the middle, old records behind the end",
        m_log.first(m_ends.at(9)) + junk + m_log.sliced(m_ends.at(9), m_ends.at(20) - m_ends.at(9))
            + QByteArray(2, '\0') + old,
        10, 11, 300 + m_ends.at(20) - m_ends.at(9));
    row("zeroes to the end", m_log + QByteArray(4096, '\0'), 50, 0, 4096 + 2);
    row("junk at the end", m_log.chopped(2) + junk, 50, 0, 300);
    row("header lost", QByteArray(500, '\0'), 0, 0, 0);
    row("an end lost", swallowing, 4, 45, m_log.size() - 2 - m_ends.at(3));
}

// What is behind the damage is told and kept in one copy, until the next command takes its place.
void TestDamagedLog::tellsWhatIsLost()
{
    const auto [log, events, lost, bytes] =
        fetch<QByteArray, int, int, int>({"log", "events", "lost", "bytes"});
    const bool isNew = !log.startsWith(m_header);
    QDir copies(m_fight->folder().file(QStringLiteral("History")));
    copies.removeRecursively();
    for (int starts = 0; starts < 2; ++starts) {
        start(log);
        QCOMPARE(theHistory->eventCount(), events);
        QCOMPARE(int(theHistory->damage().lostBytes), bytes);
        QCOMPARE(theHistory->damage().lostEvents, lost);
        QCOMPARE(theHistory->damageText().isEmpty(), bytes == 0);
        QCOMPARE(theHistory->damageText().contains(
                     QStringLiteral("missing from the fight: %1.").arg(lost)),
                 lost > 0);
        QVERIFY(file() == log || isNew);
    }
    damageAria();
    copies.refresh();
    const QStringList names = copies.entryList(QDir::Files);
    QVERIFY(names.size() <= 1);
    if (bytes > 0)
        QCOMPARE(theHistory->damage().copy, copies.filePath(names.value(0)));
    if (bytes > 0 || isNew) {
        QCOMPARE(m_fight->folder().read(QStringLiteral("History/") + names.value(0)), log);
    }
    start(file());
    QCOMPARE(theHistory->eventCount(), events + 1);
    QVERIFY(theHistory->damageText().isEmpty());
}

void TestDamagedLog::sizesAreNotBelieved_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::newRow("negative") << QByteArray("ffffffff");
    QTest::newRow("least") << QByteArray("00000080");
    QTest::newRow("most") << QByteArray("ffffff7f");
    QTest::newRow("more than the bytes left") << QByteArray("00020000");
}

// The list counts as empty, and the event behind it is read in full.
void TestDamagedLog::sizesAreNotBelieved()
{
    QFETCH(const QByteArray, size);
    const QByteArray damage = "2c01 04 04000000  6700 00 6800 00  6600 04" + size
        + "6700 04 41726961 6800 00  6500 00  5501 04 05000000  5401 00";
    const QByteArray delay = "2c01 04 0f000000  6700 04 41726961 6800 00  7c01 00";
    load(m_header + QByteArray::fromHex(damage + delay + "0000"));
    QCOMPARE(theHistory->eventCount(), 2);
    QCOMPARE(theHistory->eventText(0), QStringLiteral("Damaged 5: "));
    QCOMPARE(theHistory->eventText(1), QStringLiteral("* Delayed: Aria *"));
}

void TestDamagedLog::missingListsCostNoOtherEvent_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("add monster") << QByteArray(
        "2c01 04 1c000000  ff01 01 78  0002 04 00000000  fe01 00");
    QTest::newRow("extended rest") << QByteArray("2c01 04 1a000000  e001 00");
}

void TestDamagedLog::missingListsCostNoOtherEvent()
{
    QFETCH(const QByteArray, record);
    const QByteArray delay = "2c01 04 0f000000  6700 04 41726961 6800 00  7c01 00";
    load(m_header + QByteArray::fromHex(record + delay + "0000"));
    QCOMPARE(theHistory->eventCount(), 2);
    QCOMPARE(theHistory->eventAt(0)->size(), int(QByteArray::fromHex(record).size()));
    QCOMPARE(theHistory->eventText(1), QStringLiteral("* Delayed: Aria *"));
}

// Of a later version, say.
void TestDamagedLog::unknownFieldsAreSkipped()
{
    const QByteArray delay = "2c01 04 0f000000  e803 02 abcd  6700 04 41726961  e903 00  6800 00"
                             "e803 03 000000  7c01 00";
    load(m_header + QByteArray::fromHex(delay + "0000"));
    QCOMPARE(theHistory->eventCount(), 1);
    QCOMPARE(theHistory->eventText(0), QStringLiteral("* Delayed: Aria *"));
    QCOMPARE(theHistory->eventAt(0)->size(), int(QByteArray::fromHex(delay).size()));
    // In front of the lists of an encounter and of initiative too.
    const QByteArray set = "2c01 04 1b000000  8d00 01 66 8e00 01 44 8f00 00 9000 04 01000000"
                           "9100 04 64000000 8c00 00  e803 02 abcd  c900 04 01000000"
                           "6700 07 5261742028 3129 6800 00 a100 04 07000000 a200 04 09000000"
                           "a000 00 c800 00  f501 04 00000000 f401 00";
    const QByteArray start = "2c01 04 01000000  e803 00  2102 04 00000000 1c02 00  e903 00"
                             "2102 04 01000000 1d02 03 526174 1e02 04 07000000 1f02 04 09000000"
                             "2002 00 1c02 00  3601 00";
    load(m_header + QByteArray::fromHex(set + start + "0000"));
    QCOMPARE(theHistory->eventCount(), 2);
    QCOMPARE(theEncounter->count(), 1);
    QCOMPARE(theEncounter->at(0)->initRoll(), 7);
}

MORVANE_TEST_MAIN(QGuiApplication, TestDamagedLog)
#include "tst_damagedlog.moc"
