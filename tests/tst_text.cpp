// The text helpers: rich texts, prefixes, escapes, line ends, the order of names.
#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <array>

#include "keyvalue.h"
#include "testhome.h"
#include "text.h"

using namespace Qt::StringLiterals;

class TextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void wraps();
    void wrappingKeepsTheWords();
    void longHostileTextsStayLinear();
    void measuresWithoutTags();
    void makesPlainText();
    void cutsAtSeparators();
    void changesFirstLetters();
    void knowsNumbers();
    void unifiesLineEnds();
    void escapes();
    void parsesKeyValue();
    void limitsTheKey();
    void ordersNames();
};

void TextTest::wraps()
{
    struct Case {
        const char *html;
        int width;
        const char *expected;
    };
    const Case cases[] = {{"one two", 20, "one two"},
                          {"", 5, ""},
                          {"aaaa bbbb cc", 4, "aaaa<br>bbbb<br>cc"},
                          {"aaaa bbbbbbbbb cc", 6, "aaaa<br>bbbbbbbbb<br>cc"},
                          {"aa bbbb cc", 6, "aa bbbb<br>cc"},
                          {"aaaa/bbbb cc", 5, "aaaa/<br>bbbb cc"},
                          {"aaaa\\bbbb", 5, "aaaa\\<br>bbbb"},
                          {"<b>aa</b> <i>bb</i> cc", 5, "<b>aa</b> <i>bb</i><br>cc"},
                          {"&lt;&gt;&amp; bb cc", 6, "&lt;&gt;&amp; bb<br>cc"},
                          {"a & b & c", 100, "a & b & c"},
                          {"aa<br>bb", 20, "aa bb"},
                          {"aa \n\t bb", 20, "aa bb"},
                          {"aaa bb<p>ccc dd", 6, "aaa bb<p>ccc dd"},
                          {"aa <b bb cc", 2, "aa<br><b bb cc"}};
    for (const Case &each : cases)
        QCOMPARE(wrapRichText(QLatin1String(each.html), each.width), QLatin1String(each.expected));
}

void TextTest::wrappingKeepsTheWords()
{
    const QString text = QStringLiteral("The <b>goblin</b> lunges at &quot;Aria&quot; and slides "
                                        "her/him two squares<p>Then it hides again");
    for (int width = -1; width < 60; ++width) {
        QString joined = wrapRichText(text, width);
        joined.replace(u"/<br>"_s, u"/"_s);
        QCOMPARE(joined.replace(u"<br>"_s, u" "_s), text);
    }
}

void TextTest::longHostileTextsStayLinear()
{
    const int size = 1000000;
    QElapsedTimer timer;
    timer.start();
    for (const QChar c : u"<&/ a"_s) {
        wrapRichText(QString(size, c), 60);
        plainText(QString(size, c));
    }
    wrapRichText(u"&amp"_s.repeated(size / 4), 1);
    QVERIFY2(timer.elapsed() < 20000, "a text of a million characters took over 20 seconds");
}

void TextTest::measuresWithoutTags()
{
    QCOMPARE(plainLength(u"<b>Aria</b> hits"_s), 9);
    QCOMPARE(plainLength(u"3 > 2"_s), 5);
    QCOMPARE(plainLength(u"ab<unclosed"_s), 2);
    QCOMPARE(plainLength(QString()), 0);
}

void TextTest::makesPlainText()
{
    QCOMPARE(plainText(u"<b>No</b> file.<p>Check &quot;it&quot;<br>&amp;lt; now"_s),
             u"No file.\nCheck \"it\"\n&lt; now"_s);
    QCOMPARE(plainText(u"cut <a href"_s), u"cut "_s);
}

void TextTest::cutsAtSeparators()
{
    const QString path = u"a/b/c"_s;
    const QString slash = u"/"_s;
    QCOMPARE(afterLast(path, slash), u"c"_s);
    QCOMPARE(beforeFirst(path, slash), u"a"_s);
    QCOMPARE(afterFirst(path, slash), u"b/c"_s);
    QCOMPARE(beforeLast(path, slash), u"a/b"_s);

    const QString absent = u"::"_s;
    QCOMPARE(afterLast(path, absent), path);
    QCOMPARE(beforeFirst(path, absent), path);
    QCOMPARE(afterFirst(path, absent), QString());
    QCOMPARE(beforeLast(path, absent), QString());
}

void TextTest::changesFirstLetters()
{
    for (const QStringList &pair :
         {QStringList {u"Éclair"_s, u"éclair"_s}, {u"1st"_s, u"1st"_s}, {QString(), QString()}}) {
        QString text = pair[0];
        lowerFirst(text);
        QCOMPARE(text, pair[1]);
        upperFirst(text);
        QCOMPARE(text, pair[0]);
    }
}

void TextTest::knowsNumbers()
{
    struct Case {
        const char *text;
        bool number;
        int leading;
    };
    const Case cases[] = {{"", true, 0},           {"42", true, 42},
                          {"-7", true, -7},        {"+3", true, 3},
                          {"1,250", true, 1},      {" 12 squares", false, 12},
                          {"--4", true, 0},        {"- 4", false, 0},
                          {"fly 6", false, 0},     {"2147483647", true, 2147483647},
                          {"2147483648", true, 0}, {"\u0663", false, 0}};
    for (const auto &[text, number, leading] : cases) {
        QCOMPARE(isNumber(QString::fromUtf8(text)), number);
        QCOMPARE(leadingInt(QString::fromUtf8(text)), leading);
    }
    QCOMPARE(signedNumber(42), "+42");
    QCOMPARE(signedNumber(-7), "-7");
    QCOMPARE(signedNumber(0), "0");
}

void TextTest::unifiesLineEnds()
{
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"a\rb\nc\r\nd", "a\nb\nc\nd"}, {"\r\r\n\n\r", "\n\n\n\n"}, {"abc", "abc"}};
    for (const auto &[bytes, lf] : cases) {
        QCOMPARE(toLF(bytes), lf);
        QCOMPARE(toCRLF(bytes), QByteArray(lf).replace("\n", "\r\n"));
        QCOMPARE(toLF(toCRLF(bytes)), lf);
    }
}

void TextTest::escapes()
{
    // The threefold backslash turns the "n" behind it into a line end.
    const std::array<QByteArray, 3> cases[] = {{"a\r\nb", "a\\r\\nb", "a\r\nb"},
                                               {"a\\b", "a\\\\\\b", "a\\b"},
                                               {"\\n", "\\\\\\n", "\\\n"},
                                               {"Müß", "Müß", "Müß"},
                                               {"", "", ""}};
    for (const auto &[text, escaped, back] : cases) {
        QCOMPARE(escapeText(QString::fromUtf8(text)), escaped);
        QCOMPARE(unescapeText(escaped), QString::fromUtf8(back));
    }
    QCOMPARE(unescapeText("end\\"), QString(u"end" + QChar(0)));
    QCOMPARE(unescapeText("a\\=b"), u"a=b"_s);
}

void TextTest::parsesKeyValue()
{
    struct Case {
        QByteArray line;
        bool good;
        QString key, kept, resolved;
    };
    const Case cases[] = {{"name=Aria", true, "name", "Aria", "Aria"},
                          {" \tname =  Aria \r", true, "name", "Aria", "Aria"},
                          {"a=b=c", true, "a", "b=c", "b=c"},
                          {"a=", true, "a", "", ""},
                          {"group", true, "group", "", ""},
                          {"  # a=b", true, "", "", ""},
                          {" \t ", true, "", "", ""},
                          {"", true, "", "", ""},
                          {"a=x\\ny\\\\\\z", true, "a", "x\\ny\\\\\\z", "x\ny\\z"},
                          {" =b", false, "", "", ""},
                          {"a=\xff", true, "a", QChar(0xfffd), QChar(0xfffd)}};
    for (const Case &each : cases) {
        KeyValue result {u"stale"_s, u"stale"_s};
        QCOMPARE(parseKeyValue(each.line, Escapes::Keep, result), each.good);
        QCOMPARE(result.key, each.key);
        QCOMPARE(result.value, each.kept);
        QCOMPARE(parseKeyValue(each.line, Escapes::Resolve, result), each.good);
        QCOMPARE(result.key, each.key);
        QCOMPARE(result.value, each.resolved);
    }
}

void TextTest::limitsTheKey()
{
    KeyValue result;
    QByteArray line = QByteArray(400, 'k').append("=v");
    QVERIFY(parseKeyValue(line, Escapes::Keep, result));
    QCOMPARE(result.key.size(), 400);
    line.prepend('k');
    QVERIFY(!parseKeyValue(line, Escapes::Keep, result));
    QVERIFY(parseKeyValue(QByteArray(401, 'k'), Escapes::Keep, result));
}

void TextTest::ordersNames()
{
    const QStringList ordered = {
        u"Bat 2"_s,  u"rat"_s,    u"Rat 1"_s,
        u"rat 09"_s, u"Rat 10"_s, u"rat 99999999999999999999999"_s,
    };
    QStringList shuffled = ordered;
    std::reverse(shuffled.begin(), shuffled.end());
    std::sort(shuffled.begin(), shuffled.end(),
              [](const QString &a, const QString &b) { return naturalCompare(a, b) < 0; });
    QCOMPARE(shuffled, ordered);
    QCOMPARE(naturalCompare(u"Rat 7"_s, u"RAT 007"_s), 0);
}

MORVANE_TEST_MAIN(QGuiApplication, TextTest)

#include "tst_text.moc"
