// A stat block's text cut into tokens, run-on lines of a trap mended on the way.
#include <QElapsedTimer>

#include <random>

#include "statblockline.h"
#include "statblockscanner.h"
#include "tables.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

enum class White { Skip, Keep };

QList<Token> tokensOf(StatBlockScanner &scanner, White white = White::Skip)
{
    QList<Token> tokens;
    for (Token token = scanner.next(white == White::Keep); token.kind != TokenKind::End;
         token = scanner.next(white == White::Keep))
        tokens.append(token);
    return tokens;
}

// "25:Orc 17:5": the kinds are written as numbers, so that a keyword that slips shows.
QString dump(const QString &source, bool trapMode = false, White white = White::Skip)
{
    StatBlockScanner scanner(source);
    scanner.setTrapMode(trapMode);
    QStringList parts;
    for (const Token &token : tokensOf(scanner, white)) {
        QString text = token.text.toString();
        text.replace(u"\r"_s, u"\\r"_s).replace(u"\n"_s, u"\\n"_s);
        parts.append(QString::number(token.kind) + u':' + text);
    }
    return parts.join(u' ');
}

// The lines of a trap's text, a blank between two tokens.
QString mended(const QString &source)
{
    StatBlockScanner scanner(source);
    scanner.setTrapMode(true);
    QString lines;
    for (const Token &token : tokensOf(scanner)) {
        if (token.kind == TokenKind::LineEnd)
            lines += u" / "_s;
        else
            lines.append(lines.isEmpty() || lines.endsWith(u' ') ? u"" : u" ").append(token.text);
    }
    return lines;
}

QString randomText(std::mt19937 &random, int length)
{
    static const QString alphabet = u"aAbZdHMFw0123459,.;:()+-*'/>\r\n\t \u00A0\u2013\u2019\u2022"
                                    u"\u2684\u00A9\u2028\u00C4\u00E9\u0301\xD83D\xDE00\x01\x7F"_s;
    QString text;
    for (int i = 0; i < length; ++i)
        text +=
            alphabet.at(std::uniform_int_distribution<qsizetype>(0, alphabet.size() - 1)(random));
    return text;
}

} // namespace

class StatBlockScannerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void cutsTokens();
    void keepsWhiteSpace();
    void mendsTraps();
    void looksAhead();
    void losesNothing();
    void staysLinear();
    void editsLines();
};

void StatBlockScannerTest::cutsTokens()
{
    QCOMPARE(
        differences(u"tokens"_s, 2, [](const QStringList &row) -> QString { return dump(row[0]); }),
        QString());
}

void StatBlockScannerTest::keepsWhiteSpace()
{
    QCOMPARE(dump(u"Portrait: a \u00A0b\t.png \nx"_s, false, White::Keep),
             u"56:Portrait 5:: 3:  112:a 3: \u00A0 25:b 3:\t 7:. 25:png 3:  2:\\n 118:x"_s);
}

void StatBlockScannerTest::mendsTraps()
{
    QCOMPARE(differences(u"traplines"_s, 2,
                         [](const QStringList &row) -> QString { return mended(row[0]); }),
             QString());
}

void StatBlockScannerTest::looksAhead()
{
    StatBlockScanner scanner(u"one twoThree four"_s);
    QCOMPARE(scanner.peek().text, u"one");
    QCOMPARE(scanner.next().text, u"one");
    // What was only looked at is read again when the mode or the care for white space changes.
    QCOMPARE(scanner.peek().text, u"twoThree");
    QCOMPARE(scanner.next(true).kind, int(TokenKind::WhiteSpace));
    QCOMPARE(scanner.peek().text, u"twoThree");
    scanner.setTrapMode(true);
    QCOMPARE(scanner.next().text, u"two");
    QCOMPARE(scanner.peek().kind, int(TokenKind::LineEnd));
    QCOMPARE(scanner.next().kind, int(TokenKind::LineEnd));
    QCOMPARE(scanner.next().text, u"Three");
    QCOMPARE(scanner.next().text, u"four");
    QCOMPARE(scanner.peek().kind, int(TokenKind::End));
    QCOMPARE(scanner.next().kind, int(TokenKind::End));
    QCOMPARE(scanner.next().kind, int(TokenKind::End));
}

void StatBlockScannerTest::losesNothing()
{
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        const QString source = randomText(random, 60);
        for (const bool trapMode : {false, true}) {
            StatBlockScanner scanner(source);
            scanner.setTrapMode(trapMode);
            QString text;
            qsizetype mends = 0;
            for (const Token &token : tokensOf(scanner, White::Keep)) {
                QVERIFY(!token.text.isEmpty());
                const bool inSource =
                    token.text.begin() >= source.begin() && token.text.end() <= source.end();
                if (inSource)
                    text += token.text;
                else
                    ++mends;
            }
            QCOMPARE(text, source);
            QCOMPARE(scanner.position(), source.size());
            QVERIFY(trapMode || mends == 0);
        }
    }
}

void StatBlockScannerTest::staysLinear()
{
    QElapsedTimer timer;
    timer.start();
    // One megabyte that is mended behind every second character.
    StatBlockScanner scanner(u"aB"_s.repeated(500'000));
    scanner.setTrapMode(true);
    QList<Token> tokens = tokensOf(scanner);
    QCOMPARE(tokens.size(), qsizetype(1'000'001));
    // A line that is split at each of its words.
    tokens.resize(100'000);
    StatBlockLine line(std::move(tokens));
    while (line.size() > 1)
        line = line.splitAt(1);
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

void StatBlockScannerTest::editsLines()
{
    StatBlockScanner scanner(u"one (two. three)."_s);
    StatBlockLine line(tokensOf(scanner));
    QVERIFY(line.endsInFullStop());
    QCOMPARE(line.shape(), StatBlockLine::OpensAndCloses);
    line.setPosition(2);
    line.insert(1, {TokenKind::Colon, u":"});
    QCOMPARE(line.current().text, u"two");
    line.removeFirst();
    QCOMPARE(line.take().text, u"two");
    QCOMPARE(line.peek().text, u"three");
    const StatBlockLine tail = line.splitAt(4);
    QCOMPARE(line.shape(), StatBlockLine::OnlyOpens);
    QCOMPARE(tail.first().text, u"three");
    QCOMPARE(tail.shape(), StatBlockLine::OnlyCloses);
    QVERIFY(line.endsInFullStop());
    line.append({TokenKind::Symbol, u"\u201D"});
    QVERIFY(line.endsInFullStop());
    line.append(tail);
    line.removeLast();
    QVERIFY(!line.endsInFullStop());
    line.setPosition(line.size());
    QCOMPARE(line.take().kind, int(TokenKind::LineEnd));
    QVERIFY(line.atEnd());
    QCOMPARE(line.at(-1).kind, int(TokenKind::LineEnd));
}

QTEST_GUILESS_MAIN(StatBlockScannerTest)
#include "tst_statblockscanner.moc"
