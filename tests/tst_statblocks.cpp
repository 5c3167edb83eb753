// links: morvane_reports
// Whole stat blocks of each layout against the records that a player would write down, and single
// texts that a rule decides.
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include "creature.h"
#include "creaturereport.h"
#include "paths.h"
#include "statblockparser.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

const QString folder = QStringLiteral(TEST_DATA "/statblocks/");

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

CreatureData parsed(const QString &text)
{
    CreatureData data;
    StatBlockParser::parse(data, text, true, QString());
    return data;
}

QString shown(const QJsonValue &value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray {value}).toJson());
}

const QString header =
    u"Reed Eel\nLevel 2 Lurker XP 125\nHP 30\nAC 16, Fortitude 14, Reflex 15, Will 13\nSpeed 5\n"_s;
const QString trap = u"Loose Stair\nLevel 2 Trap XP 125\n"_s;

} // namespace

class StatBlocksTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void readsWholeBlocks_data();
    void readsWholeBlocks();
    void titles_data();
    void titles();
    void readsHeaderFields();
    void readsPowers_data();
    void readsPowers();
    void joinsWrappedSentences();
    void verdictCountsFields();
    void loadsFromFiles();
    void longTextsTakeLinearTime_data();
    void longTextsTakeLinearTime();
};

void StatBlocksTest::readsWholeBlocks_data()
{
    QTest::addColumn<QString>("stem");
    const QStringList files = QDir(folder).entryList({u"*.txt"_s}, QDir::Files);
    QVERIFY(files.size() >= 9);
    for (const QString &file : files)
        QTest::addRow("%s", qPrintable(file)) << folder + file.chopped(4);
}

void StatBlocksTest::readsWholeBlocks()
{
    QFETCH(QString, stem);
    const QJsonObject expected = QJsonDocument::fromJson(readFile(stem + u".json"_s)).object();
    const QString text = QString::fromUtf8(readFile(stem + u".txt"_s));
    const QJsonObject record = recordReport(parsed(text));
    QCOMPARE(record.keys(), expected.keys());
    for (const QString &key : expected.keys())
        QVERIFY2(
            record[key] == expected[key],
            qPrintable(key + u": "_s + shown(record[key]) + u"expected "_s + shown(expected[key])));
    // Nothing that one parse leaves behind changes the next; nor does the kind of line end.
    QCOMPARE(recordReport(parsed(QString(text).replace(u'\n', u"\r\n"_s))), record);
}

void StatBlocksTest::titles_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("headerText");
    QTest::addColumn<QString>("role");
    QTest::addColumn<bool>("disabled");
    const auto row = [](const char *text, const char *group, const char *headerText,
                        const char *role, bool disabled) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(group)
                            << QString::fromUtf8(headerText) << QString::fromUtf8(role) << disabled;
    };
    row("Marsh Hag (Young) Level 3 Elite Lurker", "Marsh Hag", "Young", "Elite Lurker", false);
    row("Iron Will\nFanatic Level 3 Soldier", "Iron Will Fanatic", "", "Soldier", false);
    row("Hand (Bloodied Form)\nLevel 3 Brute", "Hand", "Bloodied Form", "Brute", false);
    row("Portrait Ghoul Level 3 Brute", "Portrait Ghoul", "", "Brute", false);
    row("Huge Old Brute\nLevel 3 Brute (Leader)", "Huge Old Brute", "", "Brute (Leader)", false);
    row("Mother’s Kettle\nXP 100", "Mother’s Kettle", "", "", false);
    row("Dart Trap Level 3 Blaster", "Dart Trap", "", "Blaster", true);
    row("Dart Trap\nLevel 3 Trap", "Dart Trap", "", "Trap", true);
    row("Spore Field Hazard Level 3", "Spore Field", "", "Hazard", true);
    row("Dart Wall\nTrap\nLevel 3", "Dart Wall", "", "", true);
    row("Dart Wall\nLevel 3 Elite\nTrap XP 300", "Dart Wall", "", "Elite", true);
}

void StatBlocksTest::titles()
{
    QFETCH(QString, text);
    const CreatureData data = parsed(text);
    QTEST(data.group, "group");
    QTEST(data.headerText, "headerText");
    QTEST(data.role, "role");
    QTEST(data.disabled, "disabled");
}

void StatBlocksTest::readsHeaderFields()
{
    const CreatureData data = parsed(
        u"Reed Eel\nLevel ⚄ Lurker F XP 1.250\nSmall beast\n(eel) XP 9\nInitiative -1 Perception "
        u"–2 Insight +9\nHP 30; Bloodied 15 Resist 5 fire;\nImmune fear; blindsight 4\nSpeed 5 "
        u"while wet Action Points 2"_s);
    QCOMPARE(data.level, 5);
    QCOMPARE(data.xp, 9); // the later one
    QCOMPARE(data.type, u"Small beast (eel)"_s);
    QCOMPARE(data.initBonus, -1);
    QCOMPARE(data.perception, -2);
    QCOMPARE(data.insight, NotStated);
    QCOMPARE(data.resist, u"5 fire"_s);
    QCOMPARE(data.immune, u"fear; blindsight 4"_s); // blindsight ends no clause
    QCOMPARE(data.senses, QString());
    QCOMPARE(data.speed, u"5 while wet"_s);
    QCOMPARE(data.initAP, 2);
    // A trap's words are cut at capitals, its picture's path isn't.
    const CreatureData stair = parsed(u"Stair Level 2 Trap\nPortrait My Traps/DartWall2B.png\n"_s);
    QCOMPARE(stair.portraitFile, u"My Traps/DartWall2B.png"_s);
}

void StatBlocksTest::readsPowers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QString &text, const char *expected) {
        QTest::newRow(name) << text << QString::fromUtf8(expected);
    };
    row("die face", header + u"m Bite (standard; recharge ⚄)\n+4 vs. AC."_s,
        "5/3/8 Bite|(standard; recharge <img src=':/images/stats/5a.gif'> <img "
        "src=':/images/stats/6a.gif'>)|+4 vs. AC.");
    row("one word names a power", header + u"Bite\n+4 vs. AC; 1d6 damage."_s,
        "4/3/0 Bite||+4 vs. AC; 1d6 damage.");
    row("name in lower case", header + u"r spit acid (minor; at-will)\nRanged 5."_s,
        "7/5/1 spit acid|(minor; at-will)|Ranged 5.");
    row("a sentence begins with the word portrait",
        header + u"m Stare (standard; at-will)\nIt stares.\nPortrait of a lord, it is."_s,
        "5/3/1 Stare|(standard; at-will)|It stares.|Portrait of a lord, it is.");
    row("name in lower case below a heading",
        header + u"Minor Actions\nspit acid • At-Will\nRanged 5."_s,
        "7/5/1 spit acid| &bull; <b>At-Will</b>|Ranged 5.");
    row("weapons", header + u"Stick (weapon) • At-Will\nHit.\nStone (sling) • At-Will\nHit."_s,
        "4/3/1 Stick|(weapon) &bull; <b>At-Will</b>|Hit.\n"
        "4/5/1 Stone|(sling) &bull; <b>At-Will</b>|Hit.");
    row("signs are escaped", header + u"m Bite <i> • At-Will\nThe eel & it > <i>."_s,
        "4/3/1 Bite| &bull; <b>&lt;I &gt; • At-Will</b>|The eel&amp;it &gt;&lt;i &gt;.");
    row("a number begins the sentence of a trait",
        u"Eel\nLevel 2 Lurker\nOily Wake aura 1; 2 damage to swimmers.\nHP 9"_s,
        "4/11/0 Oily Wake| &bull; <b>Aura</b> 1|2 damage to swimmers.");
    row("wrapped bracket", header + u"m Bite (standard;\nat-will) • Acid\n+4 vs. AC."_s,
        "5/3/1 Bite|(standard; at-will) &bull; <b>Acid</b>|+4 vs. AC.");
    row("secondary attack",
        header
            + u"m Bite (standard; at-will)\n+4 vs. AC.\nCoil Attack\nSecondary Attack: +6 vs. "
              u"Reflex."_s,
        "5/3/1 Bite|(standard; at-will)|+4 vs. AC.|Coil Attack|<i>Secondary Attack:</i> +6 vs. "
        "Reflex.");
    row("trap: two headings of one attack",
        trap + u"Initiative +3\nTrigger\nAttack\nThe stair tips."_s,
        "9/0/0 Trigger||The stair tips.");
    row("trap: the two headings in lower case",
        trap + u"Initiative +3\ntrigger\nattack\nIt tips."_s, "9/0/0 trigger||It tips.");
    row("trap: no comma at a countermeasure's end",
        trap + u"Countermeasures\nJump\nA DC 15 Athletics check"_s,
        "10/3/0 Jump||A DC 15 Athletics check.");
}

void StatBlocksTest::readsPowers()
{
    QFETCH(QString, text);
    QStringList powers;
    const CreatureData data = parsed(text);
    for (const Power &power : data.powers) {
        QStringList parts {power.name, power.keywords};
        powers.append(u"%1/%2/%3 "_s.arg(power.section).arg(power.icon).arg(power.usageKind)
                      + (parts + power.details).join(u'|'));
    }
    QTEST(powers.join(u'\n'), "expected");
}

void StatBlocksTest::joinsWrappedSentences()
{
    const auto detailsOf = [](int lines, const QString &end) {
        const QString text = header + u"m Bite (standard; at-will)\n"_s
            + QStringList(lines, u"and then it bites again"_s).join(u'\n') + end;
        return parsed(text).powers.value(0).details.size();
    };
    QCOMPARE(detailsOf(3, u"."_s), 1);
    QCOMPARE(detailsOf(13, u"."_s), 1);
    // Of 13 lines without a full stop the first stays alone, the 12 behind it run to the end.
    QCOMPARE(detailsOf(13, u"\nalignment evil"_s), 2);
    QCOMPARE(detailsOf(12, u"\nalignment evil"_s), 1);
}

void StatBlocksTest::verdictCountsFields()
{
    CreatureData data;
    QVERIFY(!StatBlockParser::parse(data, u" \n\r\n\t"_s, true, QString()));
    QVERIFY(!StatBlockParser::parse(data, u"Eel\nLevel 2 Lurker\nSpeed 5"_s, true, QString()));
    data = {};
    QVERIFY(StatBlockParser::parse(data, u"Eel\nTiny fish\nLevel 2 Lurker\nSpeed 5"_s, true,
                                   QString()));
    data = {};
    QVERIFY(StatBlockParser::parse(data, u"Aria\nSmall elf\nLevel 2 Striker\nSpeed 5"_s, false,
                                   QString()));
    QCOMPARE(data.name, u"Aria"_s);
    QVERIFY(!data.isMonster && data.group.isEmpty());
}

void StatBlocksTest::loadsFromFiles()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(u"Monsters"_s));
    for (const char *name : {"solo", "trap"})
        QVERIFY(QFile::copy(folder + QLatin1String(name) + u".txt"_s,
                            creaturePath(QLatin1String(name) + u".txt"_s, true, dir.path())));
    Creature monster;
    QVERIFY(monster.load(u"solo.txt"_s, true, dir.path()));
    QVERIFY(!monster.isInvalid() && !monster.isDisabled());
    QCOMPARE(monster.displayName(), u"Vethrisk, the Drowned Bell"_s);
    QCOMPARE(monster.currHP(), 560);
    QCOMPARE(monster.senses(), u"Blindsight 10, darkvision"_s);
    QCOMPARE(monster.statBlock(), QString::fromUtf8(readFile(folder + u"solo.txt"_s)));
    Creature trapCreature;
    QVERIFY(trapCreature.load(u"trap.txt"_s, true, dir.path()));
    QVERIFY(!trapCreature.isInvalid() && trapCreature.isDisabled());
}

void StatBlocksTest::longTextsTakeLinearTime_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("unit");
    const auto row = [](const char *name, const QString &start, const char *unit) {
        QTest::newRow(name) << start << QString::fromUtf8(unit);
    };
    row("title", QString(), "endless name\n");
    row("one line", header + u"m Bite (standard)\n"_s, "again, ");
    row("commas", header + u"Speed 5 "_s, "again,\n");
    row("bullets", header + u"m Bite (standard)\n"_s, "Bite. • ");
    row("run-on words", trap, "damageMiss");
    row("run-on sentences", trap, "The trap hits.");
    row("skills of a trap", trap + u"Attack\n"_s, "Arcana or Bluff ");
    row("countermeasures", trap, "Countermeasures ");
    row("headings", trap + u"Trap: It hits.\n"_s, "Attack The Trap Hits It ");
    row("nested skills", trap + u"Attack\n"_s, "Arcana : ");
    row("sections", trap + u"Attack\nIt hits.\n"_s, "Countermeasures ");
    row("lines in brackets", trap, "Bite ( * x (\n");
    row("brackets", header, "Bite (\n");
    row("powers", header, "Free Actions\nBite\nIt bites.\nTraits\nBite\nIt bites.\n");
    row("success", header + u"Traits\n"_s, "Success ( ");
    row("senses", header, "darkvision ");
    row("marks", trap + u"F XP 9\n"_s, "> * ");
}

// A million characters of what a reader might look through once too often.
void StatBlocksTest::longTextsTakeLinearTime()
{
    QFETCH(QString, start);
    QFETCH(QString, unit);
    const auto timeOf = [&](qsizetype size) {
        const QString text = start + unit.repeated(size / unit.size());
        QElapsedTimer timer;
        timer.start();
        parsed(text);
        return timer.nsecsElapsed() / 1e6;
    };
    const double small = timeOf(62'500);
    const double large = timeOf(1'000'000);
    // 16 times the text; a square would be 256 times.
    QVERIFY2(large < 64 * small + 100, qPrintable(u"%1 ms, %2 ms"_s.arg(small).arg(large)));
}

MORVANE_TEST_MAIN(QGuiApplication, StatBlocksTest)

#include "tst_statblocks.moc"
