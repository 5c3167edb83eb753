// What a line of a stat block is taken for.
#include <random>

#include "datatable.h"
#include "statblockclassifier.h"
#include "statblockscanner.h"
#include "testhome.h"

using namespace LineKind;
using namespace Qt::StringLiterals;
using StatBlockClassifier::Context;
using StatBlockClassifier::Result;

namespace {

class ScannedLine {
public:
    explicit ScannedLine(const QString &text) : m_scanner(text)
    {
        for (Token token = m_scanner.next(); token.kind != TokenKind::End; token = m_scanner.next())
            line.append(token);
    }

    StatBlockLine line;

private:
    StatBlockScanner m_scanner; // owns the text
};

constexpr Context after(int state)
{
    return {state, false, false};
}

constexpr Context inTrap(int state)
{
    return {state, false, true};
}

constexpr Context beforeStatistics {HEADER_LINE, true, false};

QString told(const Result &result)
{
    return lineKindName(result.kind)
        + (result.split == 0 ? QString() : u" split %1"_s.arg(result.split));
}

} // namespace

Q_DECLARE_METATYPE(Context)
Q_DECLARE_METATYPE(Result)

class StatBlockClassifierTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void classifies_data();
    void classifies();
    void findsEndOfName_data();
    void findsEndOfName();
    void knowsTrapActions();
    void namesKinds();
    void takesAnything();
};

void StatBlockClassifierTest::classifies_data()
{
    addColumns<QString, Context, Result>({"text", "context", "expected"});
    const auto row = [](const char *text, const Context &context, Result expected) {
        QTest::addRow("%s after %s%s", text, qPrintable(lineKindName(context.state)),
                      context.trapMode          ? " in a trap"
                          : context.headerFirst ? " before the statistics"
                                                : "")
            << QString::fromUtf8(text) << context << expected;
    };
    row("", after(HEADER_TITLE), {NO_LINE});
    row("HP 5", after(HEADER_TITLE), {HEADER_TITLE});

    // The footer may follow anything but the headings.
    for (const int state : {HEADER_LINE, POWER_DETAIL, POWER_DETAIL_W_TRAP, FOOTER_LINE}) {
        row("Alignment Evil", after(state), {FOOTER_LINE});
        row("Cha 10", after(state), {FOOTER_LINE});
        row("Equipment: spear", after(state), {FOOTER_HEADER});
        row("\u00A9 2026", after(state), {FOOTER_HEADER});
    }
    row("Skills Stealth +5", after(POWER_HEADER), {UNKNOWN_LINE});
    row("Monster of the deep", after(POWER_SECTION), {UNKNOWN_LINE});
    row("M Claw (standard; at-will)", after(FOOTER_HEADER), {FOOTER_DETAIL});

    // Statistics, of a monster and of a trap.
    for (const char *text : {"Medium beast", "Solo Brute", "Terrain", "Darkvision", "Portrait: a",
                             "saving throws +2"}) {
        row(text, after(HEADER_LINE), {HEADER_LINE});
        row(text, inTrap(HEADER_LINE), {HEADER_LINE});
    }
    row("Perception +5", after(HEADER_LINE), {HEADER_LINE});
    row("Perception", inTrap(HEADER_LINE), {UNKNOWN_LINE});
    row("HP 10", after(POWER_DETAIL), {UNKNOWN_LINE});
    row("points", after(HEADER_LINE), {UNKNOWN_LINE});

    // Headings.
    for (const char *text :
         {"Traits", "Countermeasures", "Other Powers", "STANDARD ACTIONS", "Triggered Actions"}) {
        row(text, after(HEADER_LINE), {POWER_SECTION});
        row(text, inTrap(POWER_DETAIL), {POWER_SECTION});
    }
    row("Standard Actions", after(POWER_HEADER), {UNKNOWN_LINE});
    row("Move Actions", after(POWER_SECTION), {POWER_HEADER}); // by its capitals
    row("traits of old", after(POWER_DETAIL), {UNKNOWN_LINE});
    row("free actions again", after(POWER_DETAIL), {UNKNOWN_LINE});
    row("Countermeasures A guard can", inTrap(POWER_DETAIL), {POWER_SECTION, 1});
    row("countermeasures a guard can", after(POWER_DETAIL), {UNKNOWN_LINE});

    // A power's header, by letter, bullet and name.
    for (const int state : {HEADER_LINE, POWER_SECTION, POWER_DETAIL}) {
        row("m bite", after(state), {POWER_HEADER});
        row("X spikes", after(state), {POWER_HEADER});
        row("A Storm of Ash", after(state), {POWER_HEADER});
        row("a Storm of Ash", after(state), {POWER_HEADER});
        row("Bite \u2726 At-Will", after(state), {POWER_HEADER_DOT});
        row("Bite * At-Will", after(state), {POWER_HEADER_DOT});
        row("Double Bite (standard; at-will)", after(state), {POWER_HEADER});
    }
    row("A storm of ash", after(POWER_DETAIL), {UNKNOWN_LINE});
    row("bite \u2726 at-will", after(POWER_DETAIL), {UNKNOWN_LINE});
    row("M Bite", after(POWER_HEADER_DOT), {UNKNOWN_LINE});
    row("Double Bite (standard; at-will)", after(POWER_HEADER), {UNKNOWN_LINE});
    row("Bite (standard; at-will)", after(POWER_DETAIL), {UNKNOWN_LINE});
    row("Ash Cloud (fire) aura 2", beforeStatistics, {HEADER_TRAIT});
    row("Ash Cloud (fire) aura 2", after(HEADER_TRAIT), {POWER_HEADER});

    // Details.
    for (const int state : {POWER_HEADER, POWER_DETAIL}) {
        row("15 damage", after(state), {POWER_DETAIL});
        row("2d6 + 5 damage", after(state), {POWER_DETAIL});
        row("+9 vs. AC", after(state), {POWER_DETAIL});
        row("Hit: 5 damage", after(state), {POWER_DETAIL_W_LABEL});
        row("Secondary Attack: +9", after(state), {POWER_DETAIL_W_LABEL});
        row("Attack (melee): +9", after(state), {POWER_DETAIL_W_LABEL});
        row("Attack (melee) +9", after(state), {UNKNOWN_LINE});
        row("Action: none", after(state), {POWER_DETAIL_W_LABEL});
        row("Success: none", after(state), {UNKNOWN_LINE});
        row("it ends. then", after(state), {POWER_DETAIL});
        row("it goes on", after(state), {UNKNOWN_LINE});
        row("Trap: a pit", after(state), {POWER_DETAIL_W_TRAP});
        row("Hazard: a fire", after(state), {POWER_DETAIL_W_TRAP});
        row("DC 20: a pit", after(state), {TRAP_DETAIL_DC});
        row("Perception DC 20: a pit", after(state), {TRAP_DETAIL_SKILL_DC});
        row("Thievery DC 20: a pit", after(state), {TRAP_DETAIL_SKILL_DC});
        row("DC 20 a pit", after(state), {UNKNOWN_LINE});
        row("DC: a pit", after(state), {UNKNOWN_LINE});
        row("thievery or arcana", after(state), {UNKNOWN_LINE});
    }
    row("15 damage", after(POWER_SECTION), {UNKNOWN_LINE});
    row("Hit: none", after(POWER_SECTION), {UNKNOWN_LINE});
    row("Hit: none.", after(POWER_SECTION), {POWER_DETAIL_W_LABEL});
    row("Hit: none", inTrap(POWER_SECTION), {POWER_DETAIL_W_LABEL});

    // Skills and headings of traps.
    row("Thievery or Arcana", inTrap(POWER_DETAIL), {POWER_HEADER});
    row("Thievery or Arcana or Nature a guard", inTrap(POWER_HEADER), {POWER_HEADER, 5});
    row("Thievery or Arcana DC 20", inTrap(POWER_DETAIL), {TRAP_DETAIL_SKILL_DC});
    row("Thievery", inTrap(POWER_DETAIL), {TRAP_DETAIL_SKILL});
    row("Thievery: a guard", inTrap(POWER_DETAIL), {TRAP_DETAIL_SKILL_DC});
    row("Perception", inTrap(POWER_DETAIL), {UNKNOWN_LINE});
    for (const char *text : {"Trigger", "Special", "Attack", "Attack 2"}) {
        row(text, inTrap(POWER_HEADER), {POWER_HEADER});
        row(text, after(POWER_HEADER), {UNKNOWN_LINE});
    }
    row("trigger", inTrap(POWER_HEADER), {UNKNOWN_LINE});
    row("Attack 2 3", inTrap(POWER_HEADER), {UNKNOWN_LINE});
}

void StatBlockClassifierTest::classifies()
{
    const auto [text, context, expected] =
        fetch<QString, Context, Result>({"text", "context", "expected"});
    const ScannedLine scanned(text);
    QCOMPARE(told(StatBlockClassifier::classify(scanned.line, context)), told(expected));
}

void StatBlockClassifierTest::findsEndOfName_data()
{
    addColumns<QString, int, bool>({"text", "end", "isHeader"});
    const auto row = [](const char *text, int end, bool isHeader) {
        QTest::newRow(text) << QString::fromUtf8(text) << end << isHeader;
    };
    row("bite", 0, false);
    row("5", 0, false);
    row("Bite", 1, true);
    row("Shield Bash", 2, true);
    row("Shield Bash (weapon)", 2, true);
    row("Attack (melee): text", 1, false);
    row("Bite, then", 1, false);
    row("Bite 5", 1, false);
    row("Shield Bash 5", 2, false);
    // small words
    row("Wrath of the Sun", 4, true);
    row("Road to the Sea", 4, true);
    row("Wrath of Ash", 3, true);
    row("Death from Above", 3, true);
    row("Death beyond Ash", 1, false);
    row("Troll\u2019s Wrath", 4, true);
    row("Troll's Wrath", 2, true);
    row("Troll\u2019d Wrath", 1, false);
    row("Wrath of 5", 1, false);
    // usage words
    row("Aura of Ash", 3, true);
    row("Ash Cloud Aura 2", 2, true);
    row("Ash Cloud aura 2", 2, true);
    row("Ash rchg Cloud", 1, true);
    row("Bite At-Will", 1, true);
    row("Bite At-Will now", 1, false);
    // a sentence behind the name
    row("Quick Step The troll moves.", 2, true);
    row("Quick Step The troll moves 2 squares", 2, true);
    row("Quick Step The troll moves", 2, false);
    row("Regeneration The troll heals.", 1, true);
    row("Quick The\u2019x moves.", 1, true);
    row("Wrath of Ash burns.", 3, false);
}

void StatBlockClassifierTest::findsEndOfName()
{
    const auto [text, end, isHeader] = fetch<QString, int, bool>({"text", "end", "isHeader"});
    const ScannedLine scanned(text);
    const auto name = StatBlockClassifier::nameEnd(scanned.line, 0, 1);
    QCOMPARE(name.end, end);
    QCOMPARE(name.isHeader, isHeader);
    QVERIFY(!StatBlockClassifier::nameEnd(scanned.line, 0, end + 1).isHeader);
    // The same name behind a letter.
    const ScannedLine behindLetter(u"m "_s + text);
    const auto shifted = StatBlockClassifier::nameEnd(behindLetter.line, 1, 1);
    QCOMPARE(shifted.end, end + 1);
    QCOMPARE(shifted.isHeader, isHeader);
}

void StatBlockClassifierTest::knowsTrapActions()
{
    const std::pair<const char *, Code> cases[] = {
        {"Standard Action Melee", TRAP_DETAIL_STANDARD},
        {"Standard Actions", UNKNOWN_LINE},
        {"Free action", TRAP_DETAIL_FREE},
        {"Immediate Interrupt Close", TRAP_DETAIL_TRIGGERED},
        {"Immediate Reaction Close", TRAP_DETAIL_TRIGGERED},
        {"Immediate Action", UNKNOWN_LINE},
        {"Opportunity Action", TRAP_DETAIL_TRIGGERED},
        {"Opportunity attack", UNKNOWN_LINE},
        {"Move Action", UNKNOWN_LINE},
    };
    for (const auto &[text, kind] : cases)
        QCOMPARE(StatBlockClassifier::trapActionKind(ScannedLine(QLatin1String(text)).line), kind);
}

void StatBlockClassifierTest::namesKinds()
{
    QCOMPARE(lineKindName(0), u"UNKNOWN_LINE"_s);
    QCOMPARE(lineKindName(10), u"TRAP_DETAIL_TRIGGERED"_s);
    QCOMPARE(lineKindName(19), u"NO_LINE"_s);
    QCOMPARE(lineKindName(20), QString());
    QCOMPARE(lineKindName(-1), QString());
}

// Any words in any order, after any kind: an answer that can be carried out.
void StatBlockClassifierTest::takesAnything()
{
    const QStringList words {u"Trap"_s,
                             u"("_s,
                             u")"_s,
                             u":"_s,
                             u"DC"_s,
                             u"15"_s,
                             u"or"_s,
                             u"."_s,
                             u"\u2019"_s,
                             u"s"_s,
                             u"of"_s,
                             u"the"_s,
                             u"Ash"_s,
                             u"Thievery"_s,
                             u"A"_s,
                             u"*"_s,
                             u"countermeasures"_s,
                             u"Aura"_s,
                             u"actions"_s,
                             u"Attack"_s};
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        QStringList text;
        for (int i = 0; i < 1 + round % 8; ++i)
            text += words.at(std::uniform_int_distribution<qsizetype>(0, words.size() - 1)(random));
        const ScannedLine scanned(text.join(u' '));
        for (int state = UNKNOWN_LINE; state <= NO_LINE; ++state) {
            for (const bool trapMode : {false, true}) {
                const Context context {state, !trapMode, trapMode};
                const Result result = StatBlockClassifier::classify(scanned.line, context);
                QVERIFY(result.kind != NO_LINE);
                QVERIFY(result.split >= 0 && result.split < scanned.line.size());
                QVERIFY(StatBlockClassifier::classify(scanned.line, context) == result);
            }
        }
        for (int start = 0; start < scanned.line.size(); ++start) {
            const auto name = StatBlockClassifier::nameEnd(scanned.line, start, 1);
            QVERIFY(name.end >= start && name.end <= scanned.line.size());
        }
    }
}

QTEST_GUILESS_MAIN(StatBlockClassifierTest)
#include "tst_statblockclassifier.moc"
