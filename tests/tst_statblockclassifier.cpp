// What a line of a stat block is taken for.
#include <random>

#include "statblockclassifier.h"
#include "statblockscanner.h"
#include "tables.h"
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
    void findsEndOfName();
    void knowsTrapActions();
    void takesAnything();
};

void StatBlockClassifierTest::findsEndOfName()
{
    const auto find = [](const QStringList &row) -> QString {
        const auto nameEnd = [](const QString &text, int start, int least) -> QString {
            const auto name = StatBlockClassifier::nameEnd(ScannedLine(text).line, start, least);
            return QString::number(name.end - start) + (name.isHeader ? u" header" : u"");
        };
        const QString found = nameEnd(row[0], 0, 1);
        // The same name behind a letter.
        return found == nameEnd(u"m "_s + row[0], 1, 1) ? found : u"another behind a letter"_s;
    };
    QCOMPARE(differences(u"namedlines"_s, 2, find), QString());
    QVERIFY(!StatBlockClassifier::nameEnd(ScannedLine(u"Shield Bash"_s).line, 0, 3).isHeader);
}

void StatBlockClassifierTest::knowsTrapActions()
{
    const auto kindOf = [](const QStringList &row) -> QString {
        return lineKindName(StatBlockClassifier::trapActionKind(ScannedLine(row[0]).line));
    };
    QCOMPARE(differences(u"trapactions"_s, 2, kindOf), QString());
    QCOMPARE(lineKindName(NO_LINE), u"NO_LINE"_s);
    QCOMPARE(lineKindName(NO_LINE + 1) + lineKindName(-1), QString());
}

// Any words in any order, after any kind: an answer that can be carried out.
void StatBlockClassifierTest::takesAnything()
{
    const QStringList words =
        u"Trap ( ) : DC 15 or . \u2019 s of the Ash Thievery A * countermeasures Aura actions "
        "Attack"_s.split(u' ');
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
