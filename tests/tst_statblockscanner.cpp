// A stat block's text cut into tokens, run-on lines of a trap mended on the way.
#include <QElapsedTimer>

#include <random>

#include "datatable.h"
#include "statblockline.h"
#include "statblockscanner.h"
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
    void findsKeywords();
    void cutsTokens_data();
    void cutsTokens();
    void keepsWhiteSpace();
    void mendsTraps_data();
    void mendsTraps();
    void looksAhead();
    void readsNumbers();
    void losesNothing();
    void staysLinear();
    void shapesLines();
    void editsLines();
};

void StatBlockScannerTest::findsKeywords()
{
    // The first and last word of each group, in whatever case, and what only looks like a keyword.
    QCOMPARE(dump(u"tiny Gargantuan ARTILLERY striker Hazard terrain low-light Tremorsense"_s),
             u"26:tiny 31:Gargantuan 32:ARTILLERY 43:striker 44:Hazard 49:terrain 50:low-light "
             "55:Tremorsense"_s);
    QCOMPARE(dump(u"portrait XP Will action saving alignment cha Monster acrobatics thievery"_s),
             u"56:portrait 58:XP 65:Will 69:action 75:saving 79:alignment 87:cha 91:Monster "
             "92:acrobatics 107:thievery"_s);
    QCOMPARE(dump(u"m M r R a A c C o O x X > Attack failure At-Will Encounter 2/Encounter"_s),
             u"108:m 109:M 110:r 111:R 112:a 113:A 114:c 115:C 116:o 117:O 118:x 118:X 119:> "
             "120:Attack 139:failure 140:At-Will 143:Encounter 144:2/Encounter"_s);
    QCOMPARE(dump(u"Aura psychic illusion moun healing Countermeasures Powers DC the boomerang"_s),
             u"145:Aura 160:psychic 161:illusion 162:moun 163:healing 172:Countermeasures "
             "180:Powers 187:DC 194:the 203:boomerang"_s);
    QCOMPARE(dump(u"F f Fa mount mountain countermeasuress h \u00C4"_s),
             u"12:F 25:f 25:Fa 25:mount 25:mountain 25:countermeasuress 25:h 25:\u00C4"_s);
}

void StatBlockScannerTest::cutsTokens_data()
{
    addColumns<QString, QString>({"text", "expected"});
    const auto row = [](const char *name, const QString &text, const QString &expected) {
        QTest::newRow(name) << text << expected;
    };
    row("nothing", u""_s, u""_s);
    row("signs", u",:;.()+-*'\u2019\u00A9/=\u2022\u2726"_s,
        u"4:, 5:: 6:; 7:. 8:( 9:) 10:+ 11:- 13:* 14:' 14:\u2019 15:\u00A9 16:/ 16:= 12:\u2022 "
        "12:\u2726"_s);
    row("die faces", u"\u267F\u2680\u2685\u2686"_s, u"16:\u267F 19:\u2680 24:\u2685 16:\u2686"_s);
    row("line ends", u"a\nb\rc\r\n\n\rd"_s,
        u"112:a 2:\\n 25:b 2:\\r 114:c 2:\\r\\n 2:\\n 2:\\r 25:d"_s);
    row("white", u"\t\u00A0one\x0B\u2003two\u2028three \x01"_s, u"25:one 25:two 25:three"_s);
    row("zero ends the text", u"one\0two"_s, u"25:one"_s);
    row("other symbols", u"\u00AD\x7F\xD83D\xDE00\xD83D e\u0301"_s,
        u"16:\u00AD 16:\x7F 16:\xD83D\xDE00 16:\xD83D 25:e 16:\u0301"_s);
    row("signed", u"+5 -12 \u20137 \u2013 x + 5 -a --3"_s,
        u"17:+5 17:-12 17:\u20137 16:\u2013 118:x 10:+ 17:5 11:- 112:a 11:- 17:-3"_s);
    row("separators", u"1,000 1.5.2 3, 4. ,5 1,,2"_s,
        u"17:1,000 17:1.5.2 17:3 4:, 17:4 7:. 4:, 17:5 17:1 4:, 4:, 17:2"_s);
    row("hands", u"2H 1H, 2Hx 2H1 12H 2h"_s,
        u"25:2H 25:1H 4:, 17:2 25:Hx 17:2 25:H 17:1 17:12 25:H 17:2 25:h"_s);
    row("number words", u"2/encounter 1/round 10-foot 3-by-3 1/2 5-"_s,
        u"144:2/encounter 25:1/round 25:10-foot 25:3-by 17:-3 17:1 16:/ 17:2 17:5 11:-"_s);
    row("dice", u"2d6 2d6+5 12d10 + 5 1d8-1 2d 3damage d6 2d6+ 2D6"_s,
        u"18:2d6 18:2d6+5 18:12d10 10:+ 17:5 18:1d8 17:-1 17:2 25:d 17:3 25:damage 25:d 17:6 "
        "18:2d6 10:+ 17:2 25:D 17:6"_s);
    row("words", u"low-light'd don't don\u2019t o-o rock\u2013fall abc1"_s,
        u"25:low-light'd 25:don't 25:don 14:\u2019 25:t 25:o-o 25:rock 16:\u2013 25:fall 25:abc "
        "17:1"_s);
    row("with", u"w/ W/ w aw/"_s, u"25:w/ 25:W 16:/ 25:w 25:aw 16:/"_s);
    row("run on outside a trap", u"damageMiss (x)Hit 5.Now 6Up"_s,
        u"25:damageMiss 8:( 118:x 9:) 122:Hit 17:5 7:. 25:Now 17:6 25:Up"_s);
}

void StatBlockScannerTest::cutsTokens()
{
    const auto [text, expected] = fetch<QString, QString>({"text", "expected"});
    QCOMPARE(dump(text), expected);
}

void StatBlockScannerTest::keepsWhiteSpace()
{
    QCOMPARE(dump(u"Portrait: a \u00A0b\t.png \nx"_s, false, White::Keep),
             u"56:Portrait 5:: 3:  112:a 3: \u00A0 25:b 3:\t 7:. 25:png 3:  2:\\n 118:x"_s);
}

void StatBlockScannerTest::mendsTraps_data()
{
    addColumns<QString, QString>({"text", "lines"});
    const auto row = [](const char *name, const QString &text, const QString &lines) {
        QTest::newRow(name) << text << lines;
    };
    row("small then capital", u"damageMiss takesThe rest"_s, u"damage / Miss takes / The rest"_s);
    row("behind a hyphen", u"Multi-Attack Jack-O"_s, u"Multi-Attack Jack-O"_s);
    row("capitals then a word", u"DCThe XPTrap"_s, u"DC / The XP / Trap"_s);
    row("capital A", u"XPA HPAC"_s, u"XP / A HP / AC"_s);
    row("plain words", u"Attack All AC DC PDF McX"_s, u"Attack All AC DC PDF Mc / X"_s);
    row("number word", u"4-Armed 1/roundMiss"_s, u"4-Armed 1/round / Miss"_s);
    row("bracket", u"(a)Hit (a)5 (5)5 (a) Hit (a)hit"_s,
        u"( a ) / Hit ( a ) / 5 ( 5 ) 5 ( a ) Hit ( a ) hit"_s);
    row("full stop then a word", u"end.Next end. Next end.next"_s,
        u"end . / Next end . Next end . next"_s);
    row("full stop then a number", u"end.5 end.15 ).5 ).15 1.15"_s,
        u"end . / 5 end . / 15 ) . / 5 ) . 15 1.15"_s);
    row("number", u"DC 15Check 5x 2H +5Miss 2d6Miss 5-Foot"_s,
        u"DC 15 / Check 5 x 2H +5 / Miss 2d6 Miss 5-Foot"_s);
}

void StatBlockScannerTest::mendsTraps()
{
    const auto [text, lines] = fetch<QString, QString>({"text", "lines"});
    QCOMPARE(mended(text), lines);
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

void StatBlockScannerTest::readsNumbers()
{
    StatBlockScanner scanner(u"1,250 +7 -3 \u20134 \u2684 2147483647 2147483648 word 2d6"_s);
    QList<int> numbers;
    for (const Token &token : tokensOf(scanner))
        numbers.append(token.number());
    QCOMPARE(numbers, (QList<int> {1250, 7, -3, -4, 5, 2147483647, 0, 0, 0}));
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

void StatBlockScannerTest::shapesLines()
{
    const std::pair<const char16_t *, StatBlockLine::Shape> cases[] = {
        {u"", StatBlockLine::NoMarks},
        {u"no marks", StatBlockLine::NoMarks},
        {u"Bite (standard", StatBlockLine::OnlyOpens},
        {u"(a) (b", StatBlockLine::OnlyOpens},
        {u"at-will)", StatBlockLine::OnlyCloses},
        {u"Bite * At-Will", StatBlockLine::OnlyCloses},
        {u") (b)", StatBlockLine::OnlyCloses},
        {u"Bite (standard) F Fire", StatBlockLine::OpensAndCloses},
        {u"\u2022 (b", StatBlockLine::ClosesAndOpens},
        {u"Attack (melee): text", StatBlockLine::BracketedLabel},
        {u"Attack (melee) (x): text", StatBlockLine::OpensAndCloses},
        {u"Attack (melee \u2022 5", StatBlockLine::OpensAndCloses},
    };
    for (const auto &[text, shape] : cases) {
        StatBlockScanner scanner(QString::fromUtf16(text));
        QCOMPARE(StatBlockLine(tokensOf(scanner)).shape(), shape);
    }
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
