// links: morvane_reports
// Whole stat blocks of each layout against the records that a player would write down, and single
// texts that a rule decides.
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include "creaturedata.h"
#include "creaturereport.h"
#include "statblockparser.h"
#include "statblockreading.h"
#include "tables.h"
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
    void titles();
    void readsHeaderFields();
    void readsPowers();
    void joinsWrappedSentences();
    void verdictCountsFields();
    void tellsWhatWasRead();
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
    // All of it is understood, whoever looks on.
    const StatBlockReading reading = readingOf(true, text);
    QCOMPARE(reading.firstNotUnderstood(), -1);
    QCOMPARE(reading.lines.size(), text.count(u'\n') + 1);
    // Nothing that one parse leaves behind changes the next; nor does the kind of line end.
    QCOMPARE(recordReport(parsed(QString(text).replace(u'\n', u"\r\n"_s))), record);
}

void StatBlocksTest::titles()
{
    const auto title = [](const QStringList &row) -> QString {
        const CreatureData data = parsed(row[0]);
        return data.group + u'|' + data.headerText + u'|' + data.role + u'|'
            + (data.disabled ? u"disabled" : u"");
    };
    QCOMPARE(differences(u"titles"_s, 2, title), QString());
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
    const CreatureData imp = parsed(u"Imp\nLevel 2 Lurker\nSpeed 6 (8), dig † Bite At-Will\nIt."_s);
    QCOMPARE(imp.speed, u"6 (8), dig"_s);
    const CreatureData vane = parsed(u"Vane\nTrap: It turns.\nLevel 5 Elite\nHP 9\nAC 7"_s);
    QCOMPARE(u"%1 %2 %3 %4"_s.arg(vane.level).arg(vane.role).arg(vane.maxHP).arg(vane.armourClass),
             u"5 Trap 9 7"_s);
    QVERIFY(vane.disabled);
    // A trap's words are cut at capitals, its picture's path isn't.
    const CreatureData stair = parsed(u"Stair Level 2 Trap\nPortrait My Traps/DartWall2B.png\n"_s);
    QCOMPARE(stair.portraitFile, u"My Traps/DartWall2B.png"_s);
}

void StatBlocksTest::readsPowers()
{
    const QMap<QString, QString> beginnings {{u"header"_s, header}, {u"trap"_s, trap}};
    const auto powersOf = [&beginnings](const QStringList &row) -> QString {
        const CreatureData data = parsed(beginnings.value(row[0]) + row[1]);
        QStringList powers;
        for (const Power &power : data.powers) {
            const QStringList parts {power.name, power.keywords};
            powers.append(u"%1/%2/%3 "_s.arg(power.section).arg(power.icon).arg(power.usageKind)
                          + (parts + power.details).join(u'|'));
        }
        return powers.join(u'\n');
    };
    QCOMPARE(differences(u"powers"_s, 3, powersOf), QString());
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

void StatBlocksTest::tellsWhatWasRead()
{
    const auto told = [](const QStringList &row) -> QString {
        const StatBlockReading reading = readingOf(true, row[0]);
        QString letters;
        for (const LineReading line : reading.lines)
            letters += u"THPp?-"_s.at(int(line));
        return letters == row[1] ? reading.summary : letters;
    };
    QCOMPARE(differences(u"linereadings"_s, 3, told), QString());
    QCOMPARE(readingOf(false, u"<?xml ?>"_s).summary,
             u"Nothing read: a character's text can't be XML."_s);
}

void StatBlocksTest::longTextsTakeLinearTime_data()
{
    useTable(u"longtexts"_s, {"start", "unit"});
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
        readingOf(true, text);
        return timer.nsecsElapsed() / 1e6;
    };
    const double small = timeOf(62'500);
    const double large = timeOf(1'000'000);
    // 16 times the text; a square would be 256 times.
    QVERIFY2(large < 64 * small + 100, qPrintable(u"%1 ms, %2 ms"_s.arg(small).arg(large)));
}

MORVANE_TEST_MAIN(QGuiApplication, StatBlocksTest)

#include "tst_statblocks.moc"
