// The text helpers: rich texts, prefixes, escapes, line ends, the order of names.
#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>

#include "keyvalue.h"
#include "testhome.h"
#include "text.h"

class TextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void wraps_data();
    void wraps();
    void wrappingKeepsTheWords();
    void longHostileTextsStayLinear();
    void measuresWithoutTags();
    void makesPlainText();
    void cutsAtSeparators();
    void changesFirstLetters();
    void knowsNumbers_data();
    void knowsNumbers();
    void unifiesLineEnds_data();
    void unifiesLineEnds();
    void escapes_data();
    void escapes();
    void unescapesAloneStandingBackslash();
    void parsesKeyValue_data();
    void parsesKeyValue();
    void limitsTheKey();
    void ordersNames();
};

void TextTest::wraps_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");
    QTest::newRow("short") << "one two" << 20 << "one two";
    QTest::newRow("empty") << "" << 5 << "";
    QTest::newRow("at the space") << "aaaa bbbb cc" << 4 << "aaaa<br>bbbb<br>cc";
    QTest::newRow("nearer before") << "aaaa bbbbbbbbb cc" << 6 << "aaaa<br>bbbbbbbbb<br>cc";
    QTest::newRow("nearer behind") << "aa bbbb cc" << 6 << "aa bbbb<br>cc";
    QTest::newRow("slash stays") << "aaaa/bbbb cc" << 5 << "aaaa/<br>bbbb cc";
    QTest::newRow("backslash stays") << "aaaa\\bbbb" << 5 << "aaaa\\<br>bbbb";
    QTest::newRow("tags count nothing")
        << "<b>aa</b> <i>bb</i> cc" << 5 << "<b>aa</b> <i>bb</i><br>cc";
    QTest::newRow("entity counts one") << "&lt;&gt;&amp; bb cc" << 6 << "&lt;&gt;&amp; bb<br>cc";
    QTest::newRow("lone ampersand") << "a & b & c" << 100 << "a & b & c";
    QTest::newRow("break becomes a space") << "aa<br>bb" << 20 << "aa bb";
    QTest::newRow("white space shrinks") << "aa \n\t bb" << 20 << "aa bb";
    QTest::newRow("paragraph starts anew") << "aaa bb<p>ccc dd" << 6 << "aaa bb<p>ccc dd";
    QTest::newRow("unclosed tag") << "aa <b bb cc" << 2 << "aa<br><b bb cc";
}

void TextTest::wraps()
{
    QFETCH(QString, html);
    QFETCH(int, width);
    QTEST(wrapRichText(html, width), "expected");
}

void TextTest::wrappingKeepsTheWords()
{
    const QString text = QStringLiteral("The <b>goblin</b> lunges at &quot;Aria&quot; and slides "
                                        "her/him two squares<p>Then it hides again");
    for (int width = -1; width < 60; ++width) {
        QString joined = wrapRichText(text, width);
        joined.replace(QStringLiteral("/<br>"), QStringLiteral("/"));
        QCOMPARE(joined.replace(QStringLiteral("<br>"), QStringLiteral(" ")), text);
    }
}

void TextTest::longHostileTextsStayLinear()
{
    const int size = 1000000;
    QElapsedTimer timer;
    timer.start();
    for (const QChar c : QStringLiteral("<&/ a")) {
        wrapRichText(QString(size, c), 60);
        plainText(QString(size, c));
    }
    wrapRichText(QStringLiteral("&amp").repeated(size / 4), 1);
    QVERIFY2(timer.elapsed() < 20000, "a text of a million characters took over 20 seconds");
}

void TextTest::measuresWithoutTags()
{
    QCOMPARE(plainLength(QStringLiteral("<b>Aria</b> hits")), 9);
    QCOMPARE(plainLength(QStringLiteral("3 > 2")), 5);
    QCOMPARE(plainLength(QStringLiteral("ab<unclosed")), 2);
    QCOMPARE(plainLength(QString()), 0);
}

void TextTest::makesPlainText()
{
    QCOMPARE(plainText(QStringLiteral("<b>No</b> file.<p>Check &quot;it&quot;<br>&amp;lt; now")),
             QStringLiteral("No file.\nCheck \"it\"\n&lt; now"));
    QCOMPARE(plainText(QStringLiteral("cut <a href")), QStringLiteral("cut "));
}

void TextTest::cutsAtSeparators()
{
    const QString path = QStringLiteral("a/b/c");
    const QString slash = QStringLiteral("/");
    QCOMPARE(afterLast(path, slash), QStringLiteral("c"));
    QCOMPARE(beforeFirst(path, slash), QStringLiteral("a"));
    QCOMPARE(afterFirst(path, slash), QStringLiteral("b/c"));
    QCOMPARE(beforeLast(path, slash), QStringLiteral("a/b"));

    const QString absent = QStringLiteral("::");
    QCOMPARE(afterLast(path, absent), path);
    QCOMPARE(beforeFirst(path, absent), path);
    QCOMPARE(afterFirst(path, absent), QString());
    QCOMPARE(beforeLast(path, absent), QString());
}

void TextTest::changesFirstLetters()
{
    QString text = QStringLiteral("Éclair");
    lowerFirst(text);
    QCOMPARE(text, QStringLiteral("éclair"));
    upperFirst(text);
    QCOMPARE(text, QStringLiteral("Éclair"));
    text = QStringLiteral("1st");
    upperFirst(text);
    QCOMPARE(text, QStringLiteral("1st"));
    QString empty;
    lowerFirst(empty);
    upperFirst(empty);
    QCOMPARE(empty, QString());
}

void TextTest::knowsNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("number");
    QTest::addColumn<int>("leading");
    QTest::newRow("empty") << "" << true << 0;
    QTest::newRow("plain") << "42" << true << 42;
    QTest::newRow("signed") << "-7" << true << -7;
    QTest::newRow("plus") << "+3" << true << 3;
    QTest::newRow("thousands") << "1,250" << true << 1;
    QTest::newRow("text behind") << " 12 squares" << false << 12;
    QTest::newRow("two signs") << "--4" << true << 0;
    QTest::newRow("sign apart") << "- 4" << false << 0;
    QTest::newRow("word") << "fly 6" << false << 0;
    QTest::newRow("largest") << "2147483647" << true << 2147483647;
    QTest::newRow("too large") << "2147483648" << true << 0;
    QTest::newRow("foreign digits") << QStringLiteral("\u0663") << false << 0;
}

void TextTest::knowsNumbers()
{
    QFETCH(QString, text);
    QTEST(isNumber(text), "number");
    QTEST(leadingInt(text), "leading");
    if (text == QStringLiteral("42"))
        QCOMPARE(signedNumber(leadingInt(text)), QStringLiteral("+42"));
    if (text == QStringLiteral("-7"))
        QCOMPARE(signedNumber(leadingInt(text)), text);
    QCOMPARE(signedNumber(0), QStringLiteral("0"));
}

void TextTest::unifiesLineEnds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("lf");
    QTest::newRow("each kind") << QByteArray("a\rb\nc\r\nd") << QByteArray("a\nb\nc\nd");
    QTest::newRow("empty lines") << QByteArray("\r\r\n\n\r") << QByteArray("\n\n\n\n");
    QTest::newRow("none") << QByteArray("abc") << QByteArray("abc");
}

void TextTest::unifiesLineEnds()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, lf);
    QCOMPARE(toLF(bytes), lf);
    QCOMPARE(toCRLF(bytes), QByteArray(lf).replace("\n", "\r\n"));
    QCOMPARE(toLF(toCRLF(bytes)), lf);
}

void TextTest::escapes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("escaped");
    QTest::addColumn<QString>("back");
    QTest::newRow("lines") << "a\r\nb" << QByteArray("a\\r\\nb") << "a\r\nb";
    QTest::newRow("backslash and letter") << "a\\b" << QByteArray("a\\\\\\b") << "a\\b";
    // The threefold backslash turns the "n" behind it into a line end.
    QTest::newRow("backslash and n") << "\\n" << QByteArray("\\\\\\n") << "\\\n";
    QTest::newRow("UTF-8") << QStringLiteral("Müß") << QStringLiteral("Müß").toUtf8()
                           << QStringLiteral("Müß");
    QTest::newRow("empty") << "" << QByteArray("") << "";
}

void TextTest::escapes()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, escaped);
    QCOMPARE(escapeText(text), escaped);
    QTEST(unescapeText(escaped), "back");
}

void TextTest::unescapesAloneStandingBackslash()
{
    QCOMPARE(unescapeText("end\\"), QStringLiteral("end") + QChar(0));
    QCOMPARE(unescapeText("a\\=b"), QStringLiteral("a=b"));
}

void TextTest::parsesKeyValue_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("good");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("kept");
    QTest::addColumn<QString>("resolved");
    QTest::newRow("plain") << QByteArray("name=Aria") << true << "name"
                           << "Aria"
                           << "Aria";
    QTest::newRow("blanks") << QByteArray(" \tname =  Aria \r") << true << "name"
                            << "Aria"
                            << "Aria";
    QTest::newRow("second equals sign") << QByteArray("a=b=c") << true << "a"
                                        << "b=c"
                                        << "b=c";
    QTest::newRow("no value") << QByteArray("a=") << true << "a"
                              << ""
                              << "";
    QTest::newRow("no equals sign") << QByteArray("group") << true << "group"
                                    << ""
                                    << "";
    QTest::newRow("comment") << QByteArray("  # a=b") << true << ""
                             << ""
                             << "";
    QTest::newRow("white space") << QByteArray(" \t ") << true << ""
                                 << ""
                                 << "";
    QTest::newRow("empty") << QByteArray() << true << ""
                           << ""
                           << "";
    QTest::newRow("escaped") << QByteArray("a=x\\ny\\\\\\z") << true << "a"
                             << "x\\ny\\\\\\z"
                             << "x\ny\\z";
    QTest::newRow("no key") << QByteArray(" =b") << false << ""
                            << ""
                            << "";
    QTest::newRow("broken UTF-8") << QByteArray("a=\xff") << true << "a" << QString(QChar(0xfffd))
                                  << QString(QChar(0xfffd));
}

void TextTest::parsesKeyValue()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, good);
    KeyValue result {QStringLiteral("stale"), QStringLiteral("stale")};
    QCOMPARE(parseKeyValue(line, Escapes::Keep, result), good);
    QTEST(result.key, "key");
    QTEST(result.value, "kept");
    QCOMPARE(parseKeyValue(line, Escapes::Resolve, result), good);
    QTEST(result.key, "key");
    QTEST(result.value, "resolved");
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
        QStringLiteral("Bat 2"),  QStringLiteral("rat"),
        QStringLiteral("Rat 1"),  QStringLiteral("rat 09"),
        QStringLiteral("Rat 10"), QStringLiteral("rat 99999999999999999999999"),
    };
    QStringList shuffled = ordered;
    std::reverse(shuffled.begin(), shuffled.end());
    std::sort(shuffled.begin(), shuffled.end(),
              [](const QString &a, const QString &b) { return naturalCompare(a, b) < 0; });
    QCOMPARE(shuffled, ordered);
    QCOMPARE(naturalCompare(QStringLiteral("Rat 7"), QStringLiteral("RAT 007")), 0);
}

MORVANE_TEST_MAIN(QGuiApplication, TextTest)

#include "tst_text.moc"
