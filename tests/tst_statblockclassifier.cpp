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

} // namespace

class StatBlockClassifierTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void findsEndOfName_data();
    void findsEndOfName();
    void knowsTrapActions();
    void namesKinds();
    void takesAnything();
};

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
