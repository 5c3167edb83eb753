// The records of the log byte by byte: what each event writes, and that the same bytes are read as
// that event. The bytes were written out by hand, so that the format can't drift unseen.
#include <QBuffer>
#include <QGuiApplication>
#include <functional>

#include "creature.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "eventfactory.h"
#include "history.h"
#include "objectstream.h"
#include "rosterevents.h"
#include "testfight.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

using Make = std::function<Event *(ObjectStream *stream)>;
Q_DECLARE_METATYPE(Make)

// Each field is a tag, low byte first, the length of the value and the value.
#define HEADER "0200 04 01000000  0300 04 00000000  0400 01 31  0500 01 32  0100 00 "
#define END_OF_DATA "0000"
#define ARIA "6700 04 41726961  6800 00 "
#define BORIN "6700 05 426f72696e  6800 00 "
#define RAT_1 "6700 07 52617420283129  6800 00 "
#define NOBODY "6700 00  6800 00 "
#define LIST_OF_ARIA "6600 04 01000000 " ARIA "6500 00 "
#define LIST_OF_RAT_1 "6600 04 01000000 " RAT_1 "6500 00 "
// initiative 5, hit points 30 of 30, surges 8 of 8, surge value 7, action points 1 of 1
#define VITALITY_OF_ARIA                                                                           \
    ARIA "6302 04 05000000  6402 04 1e000000  6502 04 1e000000  6602 04 08000000 "                 \
         "6702 04 08000000  6802 04 07000000  6902 04 01000000  6a02 04 01000000  6202 00 "
// no initiative, hit points -1 of 12
#define VITALITY_OF_RAT_1                                                                          \
    RAT_1 "6302 04 e8030000  6402 04 0c000000  6502 04 ffffffff  6602 04 00000000 "                \
          "6702 04 00000000  6802 04 00000000  6902 04 00000000  6a02 04 00000000  6202 00 "
#define ITEMS_OF_RAT_1                                                                             \
    "c900 04 01000000 " RAT_1 "a100 04 11000000  a200 04 2a000000  a000 00  c800 00 "
#define VITALITIES_OF_RAT_1 "5902 04 01000000 " VITALITY_OF_RAT_1 "5802 00 "

class TestLogBytes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void record_data();
    void record();

private:
    std::unique_ptr<TestFight> m_fight;
    std::unique_ptr<Effect> m_prone;
    std::unique_ptr<Effect> m_dazed;
};

// Aria, prone and dazed, and a monster that was rolled 17 and 42 and lies at -1.
void TestLogBytes::init()
{
    failOnWarnings();
    m_fight = std::make_unique<TestFight>();
    TestFight::setRoster({QStringLiteral("Aria"), QStringLiteral("Rat (1)")});
    Creature *aria = TestFight::creature(QStringLiteral("Aria"));
    Creature *rat = TestFight::creature(QStringLiteral("Rat (1)"));
    aria->setVitality({aria, 5, 30, 30, 8, 8, 7, 1, 1});
    rat->setVitality({rat, NotStated, 12, -1, 0, 0, 0, 0, 0});
    rat->setItem({rat, 17, 42});
    theEncounter->setPosition({1, 0, {}});
    m_prone = std::make_unique<Effect>(nullptr, aria, EffectType::Prone, EffectEnd::SaveEnds);
    m_dazed = std::make_unique<Effect>(nullptr, aria, EffectType::Dazed, EffectEnd::SaveEnds);
    aria->addEffect(m_prone.get());
    aria->addEffect(m_dazed.get());
}

void TestLogBytes::cleanup()
{
    m_prone.reset();
    m_dazed.reset();
    m_fight.reset();
}

void TestLogBytes::record_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<QByteArray>("hex");
    QTest::addColumn<QString>("text");
    // The text stands behind a plus where the players see the event.
    const auto row = [](const char *name, const char *hex, const char *text, const Make &make) {
        QTest::newRow(name) << make << QByteArray(hex) << QString::fromUtf8(text);
    };
    const auto named = [](const char *name) {
        return TestFight::creature(QString::fromUtf8(name));
    };
    const auto listOf = [named](const char *name) { return QList<Creature *> {named(name)}; };

    // clang-format off
    row("1 start",
        "2c01 04 01000000"
        "2102 04 01000000  1d02 04 41726961  1e02 04 15000000  1f02 04 07000000  2002 00  1c02 00"
        "2102 04 01000000  1d02 03 526174  1e02 04 feffffff  1f02 04 08000000  2002 00  1c02 00"
        "5902 04 02000000 " VITALITY_OF_ARIA VITALITY_OF_RAT_1 "5802 00"
        "3601 00", "- * Start Encounter: Aria *", [](ObjectStream *s) {
            return new StartEncounterEvent({{QStringLiteral("Aria"), 21, 7}}, {{QStringLiteral("Rat"), -2, 8}}, s); });
    row("2 next turn", "2c01 04 02000000  4001 00", "+ * Next Turn: Rat (1) *",
        [](ObjectStream *s) { return new NextTurnEvent(s, false); });
    row("3 stop", "2c01 04 03000000  4a01 00", "+ * Stop Encounter *",
        [](ObjectStream *s) { return new StopEncounterEvent(s, false); });
    row("4 damage",
        "2c01 04 04000000 " ARIA "6600 04 02000000 " RAT_1 BORIN "6500 00" "5501 04 0c000000  5401 00",
        "+ Aria -> Damaged 12: Rat (1), Borin", [=](ObjectStream *s) {
            return new DamageEvent(named("Aria"), {named("Rat (1)"), named("Borin")}, 12, s); });
    row("5 ongoing damage", "2c01 04 05000000 " NOBODY LIST_OF_ARIA "5501 04 05000000  5401 00",
        "+ On Going Damage 5: Aria", [=](ObjectStream *s) { return new OnGoingDamageEvent(nullptr, named("Aria"), 5, s); });
    row("6 heal", "2c01 04 06000000 " ARIA LIST_OF_ARIA "5f01 04 02000000  6001 04 0e000000  5e01 00",
        "+ Aria -> Healed 14 (-2 HS): Aria", [=](ObjectStream *s) { return new HealEvent(named("Aria"), named("Aria"), 2, 14, s); });
    row("7 regeneration", "2c01 04 07000000 " NOBODY LIST_OF_RAT_1 "5f01 04 00000000  6001 04 05000000  5e01 00",
        "- Regeneration 5: Rat (1)", [=](ObjectStream *s) { return new RegenerationEvent(named("Rat (1)"), 5, s); });
    row("8 temporary hit points", "2c01 04 08000000 " NOBODY LIST_OF_ARIA "6901 04 06000000  6801 00",
        "+ Gained Temporary HP 6: Aria", [=](ObjectStream *s) { return new SetTempHPEvent(listOf("Aria"), 6, s); });
    row("9 effect with text",
        "2c01 04 09000000 " ARIA LIST_OF_RAT_1 "7301 04 14000000  7401 04 03000000  7601 04 66697265"
        "7501 04 05000000  1302 04 00000000  1202 00  7201 00",
        "+ Aria -> Ongoing 5 Damage (fire): Rat (1)", [=](ObjectStream *s) {
            return new EffectEvent(named("Aria"), listOf("Rat (1)"), QStringLiteral("fire"), 3, 20, -5, s); });
    row("9 effect with attributes",
        "2c01 04 09000000 " NOBODY LIST_OF_ARIA "7301 04 17000000  7401 04 01000000"
        "7501 04 02000000  1302 04 51000000  1202 00  7201 00",
        "+ +2 to AC, Hit, Saving Throws: Aria", [=](ObjectStream *s) {
            return new EffectEvent(nullptr, listOf("Aria"), QString(), 1, 2, {.ac = true, .hit = true, .savingThrows = true}, s); });
    row("10 remove", "2c01 04 0a000000 " ARIA "b901 04 01000000  b801 00", "+ Remove Dazed",
        [=, this](ObjectStream *s) { return new RemoveOnGoingEvent(named("Aria"), m_dazed.get(), s); });
    row("11 remove at end of turn", "2c01 04 0b000000 " ARIA "b901 04 00000000  b801 00", "+ End of Turn: Remove Prone",
        [=, this](ObjectStream *s) { return new RemoveAtEndOfTurnEvent(named("Aria"), m_prone.get(), s); });
    row("12 remove at start of turn", "2c01 04 0c000000 " ARIA "b901 04 00000000  b801 00", "+ Start of Turn: Remove Prone",
        [=, this](ObjectStream *s) { return new RemoveAtStartOfTurnEvent(named("Aria"), m_prone.get(), s); });
    row("13 saved", "2c01 04 0d000000 " ARIA "b901 04 01000000  b801 00", "+ Saved: Remove Dazed",
        [=, this](ObjectStream *s) { return new RemoveOnSaveEvent(named("Aria"), m_dazed.get(), s); });
    row("14 remove at end of encounter", "2c01 04 0e000000 " RAT_1 "b901 04 ffffffff  b801 00", "- End of Encounter: Remove Unknown",
        [=](ObjectStream *s) { return new RemoveAtEndOfEncounterEvent(named("Rat (1)"), nullptr, s); });
    row("15 delay", "2c01 04 0f000000 " ARIA "7c01 00", "+ * Delayed: Aria *",
        [=](ObjectStream *s) { return new DelayEvent(named("Aria"), s); });
    row("16 jump in", "2c01 04 10000000 " RAT_1 "8601 00", "- * Jump in: Rat (1) *",
        [=](ObjectStream *s) { return new JumpInEvent(named("Rat (1)"), s); });
    row("17 ready", "2c01 04 11000000 " ARIA "9001 00", "+ * Ready: Aria *",
        [=](ObjectStream *s) { return new ReadyEvent(named("Aria"), s); });
    row("18 ready action", "2c01 04 12000000 " RAT_1 "9a01 00", "- * Ready action: Rat (1) *",
        [=](ObjectStream *s) { return new EndReadyEvent(named("Rat (1)"), s); });
    row("19 died", "2c01 04 13000000 " RAT_1 "a401 00", "+ Died: Rat (1)",
        [=](ObjectStream *s) { return new DiedEvent(named("Rat (1)"), s); });
    row("20 failed save", "2c01 04 14000000 " ARIA "ae01 00", "+ Failed Death Saving Throw: Aria",
        [=](ObjectStream *s) { return new FailedDeathSavingThrowEvent(named("Aria"), s); });
    row("21 action point", "2c01 04 15000000 " ARIA "c201 00", "+ Use Action Point: Aria",
        [=](ObjectStream *s) { return new UseActionPointEvent(named("Aria"), s); });
    row("22 total defence",
        "2c01 04 16000000 " NOBODY LIST_OF_ARIA "7301 04 12000000  7401 04 06000000"
        "7501 04 00000000  1302 04 00000000  1202 00  7201 00",
        "+ Total Defence: Aria", [=](ObjectStream *s) { return new TotalDefenseEvent(named("Aria"), s); });
    row("23 second wind", "2c01 04 17000000 " ARIA LIST_OF_ARIA "5f01 04 01000000  6001 04 07000000  5e01 00",
        "+ Second Wind: Aria", [=](ObjectStream *s) { return new SecondWindEvent(named("Aria"), s); });
    row("24 stabilize", "2c01 04 18000000 " BORIN ARIA "cc01 00", "+ Borin -> Stabilized: Aria",
        [=](ObjectStream *s) { return new StabilizeEvent(named("Borin"), named("Aria"), s); });
    row("25 short rest",
        "2c01 04 19000000  d701 04 02000000 "
        ARIA "7900 04 02000000  7a00 04 0e000000  7b00 04 01000000  7800 00 "
        BORIN "7900 04 00000000  7a00 04 00000000  7b00 04 00000000  7800 00 "
        "d601 00",
        "+ Short Rest: Aria, Borin", [=](ObjectStream *s) {
            return new ShortRestEvent({{named("Aria"), 2, 14, 1}, {named("Borin"), 0, 0, 0}}, s); });
    row("26 extended rest of the party", "2c01 04 1a000000  e001 00", "+ Extended Rest: Aria",
        [](ObjectStream *s) { return new ExtendedRestEvent({}, s); });
    row("26 extended rest of a list", "2c01 04 1a000000 " LIST_OF_RAT_1 "e001 00", "+ Extended Rest: Rat (1)",
        [=](ObjectStream *s) { return new ExtendedRestEvent(listOf("Rat (1)"), s); });
    row("27 set encounter",
        "2c01 04 1b000000"
        "8d00 05 632e747874  8e00 06 43656c6c6172  8f00 05 44616d702e  9000 04 03000000  9100 04 c2010000"
        "9200 04 546f776e  8c00 00 "
        ITEMS_OF_RAT_1 VITALITIES_OF_RAT_1
        "f501 04 01000000  f401 00",
        "- Set Encounter: Cellar (Hidden)", [=](ObjectStream *s) {
            return new SetEncounterEvent({QStringLiteral("c.txt"), QStringLiteral("Cellar"), QStringLiteral("Damp."), 3, 450,
                                          QStringLiteral("Town")}, CreatureList(listOf("Rat (1)")), true, s); });
    row("28 add monster",
        "2c01 04 1c000000  ff01 07 52617420283129  0002 04 00000000 " ITEMS_OF_RAT_1 VITALITIES_OF_RAT_1 "fe01 00",
        "- Add Monster: Rat (1)", [=](ObjectStream *s) { return new AddMonsterEvent(CreatureList(listOf("Rat (1)")), false, {}, s); });
    row("29 add encounter",
        "2c01 04 1d000000  ff01 06 43656c6c6172  0002 04 01000000 " ITEMS_OF_RAT_1 VITALITIES_OF_RAT_1 "fe01 00",
        "- Add Encounter: Cellar (Hidden)", [=](ObjectStream *s) {
            return new AddMonstersEvent(QStringLiteral("Cellar"), CreatureList(listOf("Rat (1)")), true, {}, s); });
    row("30 set party",
        "2c01 04 1e000000  ff01 04 41726961  0002 04 00000000"
        "c900 04 01000000 " ARIA "a100 04 00000000  a200 04 00000000  a000 00  c800 00"
        "5902 04 01000000 " VITALITY_OF_ARIA "5802 00  fe01 00",
        "+ Set Party: Aria", [=](ObjectStream *s) { return new SetPartyEvent(CreatureList(listOf("Aria")), false, {}, s); });
    row("31 add no characters",
        "2c01 04 1f000000  ff01 00  0002 04 00000000  c900 04 00000000  c800 00  5902 04 00000000  5802 00  fe01 00",
        "+ Add Characters: ", [](ObjectStream *s) { return new AddCharactersEvent(CreatureList(), false, {}, s); });
    row("32 hide", "2c01 04 20000000 " RAT_1 "0902 04 01000000  0802 00", "- Hide Rat (1)",
        [=](ObjectStream *s) { return new ShowHideEvent(named("Rat (1)"), true, s); });
    row("33 first aid", "2c01 04 21000000 " BORIN LIST_OF_ARIA "5f01 04 01000000  6001 04 07000000  5e01 00",
        "+ Borin -> Second Wind (First Aid): Aria", [=](ObjectStream *s) {
            return new AdministerFirstAidEvent(named("Borin"), named("Aria"), s); });
    row("34 gain surge", "2c01 04 22000000 " ARIA LIST_OF_ARIA "5f01 04 ffffffff  6001 04 00000000  5e01 00",
        "+ Aria -> Gained Healing Surge: Aria", [=](ObjectStream *s) { return new GainHealingSurgeEvent(named("Aria"), s); });
    row("35 vitality", "2c01 04 23000000 " VITALITY_OF_RAT_1 "8002 00", "- Changed Rat (1): Init -; Curr HP -1",
        [=](ObjectStream *s) {
            Creature *rat = named("Rat (1)");
            rat->setShadowVitality({rat, 4, 12, 12, 0, 0, 0, 0, 0});
            return new SetVitalityEvent(rat->liveVitality(), s); });
    row("36 removed", "2c01 04 24000000 " LIST_OF_RAT_1 "9402 00", "- Removed: Rat (1)",
        [=](ObjectStream *s) { return new RemoveCreaturesEvent(named("Rat (1)"), s); });
    row("37 removed current", "2c01 04 25000000 " LIST_OF_ARIA "9402 00", "+ Removed Current: Aria",
        [=](ObjectStream *s) { return new RemoveCurrentEvent(named("Aria"), s); });
    row("38 adjust", "2c01 04 26000000 " LIST_OF_ARIA "a902 04 ffffffff  a802 00", "+ Initiative -1: Aria",
        [=](ObjectStream *s) { return new AdjustInitiativeEvent(listOf("Aria"), -1, s); });
    row("39 rename", "2c01 04 27000000  bd02 07 52617420283129  be02 07 52617420283229  bc02 00", "+ Rename Rat (1) -> Rat (2)",
        [](ObjectStream *s) { return new RenameCreatureEvent(QStringLiteral("Rat (1)"), QStringLiteral("Rat (2)"), s); });
    row("40 power", "2c01 04 28000000  c702 07 52617420283129  c802 04 42697465  c902 04 06000000  2003 00",
        "- Recharge 5: Rat (1) + Bite", [=](ObjectStream *s) {
            return new PowerUsageChangedEvent(named("Rat (1)"), named("Rat (1)")->powerAt(0), 6, s); });
    row("41 alias", "2c01 04 29000000  d102 07 52617420283129  d202 04 01000000  d302 06 4bc3a4666572  2003 00",
        "- Rat (1): Show Alias: K\xc3\xa4" "fer", [=](ObjectStream *s) {
            return new SetAliasEvent(named("Rat (1)"), true, QStringLiteral("K\u00e4fer"), s); });
    row("42 second wind used", "2c01 04 2a000000 " ARIA "da02 04 ffffffff  2003 00", "+ Use Second Wind: Aria",
        [=](ObjectStream *s) { return new UseSecondWindEvent(named("Aria"), -1, s); });
    // clang-format on
}

void TestLogBytes::record()
{
    QFETCH(const Make, make);
    QFETCH(const QByteArray, hex);
    QFETCH(const QString, text);
    const QByteArray bytes = QByteArray::fromHex(hex);
    const int type = QByteArray(QTest::currentDataTag()).split(' ').first().toInt();

    ObjectStream *log = theHistory->getStream();
    const int start = log->position();
    const std::unique_ptr<Event> written(make(log));
    const QByteArray file = m_fight->folder().read(QStringLiteral("history.log"));
    const QByteArray expected = bytes + QByteArray::fromHex(END_OF_DATA);
    QCOMPARE(file.mid(start).toHex(' '), expected.toHex(' '));
    QCOMPARE(written->size(), int(bytes.size()));

    auto *device = new QBuffer;
    device->setData(QByteArray::fromHex(HEADER) + bytes + QByteArray::fromHex(END_OF_DATA));
    QVERIFY(device->open(QIODevice::ReadOnly));
    ObjectStream stream(device);
    QVERIFY(stream.readHeader(true));
    bool ok = true;
    const std::unique_ptr<Event> read(readEvent(&stream, &ok));
    QVERIFY(read && ok);
    QCOMPARE(read->type(), type);
    QCOMPARE((read->isVisibleToPlayers() ? u"+ " : u"- ") + read->text(), text);
    QCOMPARE(read->size(), int(bytes.size()));
    stream.skip(read->size());
    QVERIFY(!readEvent(&stream, &ok));
    QVERIFY(ok);

    // Not of the start of a fight that runs, nor of one who acts without having waited.
    const QList<int> unlawful {EventType::StartEncounter, EventType::JumpIn, EventType::EndReady};
    if (unlawful.contains(type))
        return;
    const auto state = [] {
        return TestFight::stateText(TestFight::creatures({"Aria", "Borin", "Rat (1)"}),
                                    TestFight::TurnMarks);
    };
    const QString before = state();
    read->redo();
    read->undo();
    QCOMPARE(state(), before);
}

MORVANE_TEST_MAIN(QGuiApplication, TestLogBytes)
#include "tst_logbytes.moc"
