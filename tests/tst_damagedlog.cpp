// Logs with every kind of damage: whatever they hold, they load, go back to the start and forward
// again.
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>

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

} // namespace

class TestDamagedLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void everyTruncation();
    void everyFlippedBit_data();
    void everyFlippedBit();
    void recordsWithoutFields();
    void sizesAreNotBelieved_data();
    void sizesAreNotBelieved();
    void missingListsCostNoOtherEvent_data();
    void missingListsCostNoOtherEvent();
    void unknownFieldsAreSkipped();

private:
    void load(const QByteArray &log);
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
    m_log = m_fight->folder().read(QStringLiteral("history.log"));
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

void TestDamagedLog::everyTruncation()
{
    for (qsizetype size = m_log.size(); size >= 0; --size) {
        load(m_log.first(size));
        QVERIFY2(walk(), qPrintable(QString::number(size)));
    }
    load(m_log);
    QCOMPARE(theHistory->eventCount(), 50);
}

void TestDamagedLog::everyFlippedBit_data()
{
    QTest::addColumn<int>("bit");
    for (int bit = 0; bit < 8; ++bit)
        QTest::addRow("bit %d", bit) << bit;
}

void TestDamagedLog::everyFlippedBit()
{
    QFETCH(const int, bit);
    for (qsizetype i = 0; i < m_log.size(); ++i) {
        QByteArray log = m_log;
        log[i] = char(log.at(i) ^ (1 << bit));
        load(log);
        QVERIFY2(walk(), qPrintable(QStringLiteral("byte %1").arg(i)));
    }
    // Nothing of all that has rubbed off.
    load(m_log);
    QCOMPARE(theHistory->eventCount(), 50);
}

// Each kind of event in the middle of a fight, with nothing in its record but its type.
void TestDamagedLog::recordsWithoutFields()
{
    QByteArray fight = m_log;
    fight.chop(2);
    for (int type = 1; type <= 42; ++type) {
        const QByteArray record = QByteArray::fromHex("2c0104") + char(type)
            + QByteArray::fromHex("000000") + QByteArray(2, '\0');
        for (const QByteArray &before : {m_header, fight}) {
            load(before + record);
            QCOMPARE(theHistory->eventAt(theHistory->eventCount() - 1)->type(), type);
            QVERIFY2(walk(), qPrintable(QString::number(type)));
        }
    }
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
    QTest::newRow("start") << QByteArray("2c01 04 01000000  3601 00");
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
}

MORVANE_TEST_MAIN(QGuiApplication, TestDamagedLog)
#include "tst_damagedlog.moc"
