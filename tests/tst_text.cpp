// The text helpers: rich texts, prefixes, escapes, line ends, the order of names.
#include <QElapsedTimer>
#include <QGuiApplication>

#include <algorithm>
#include <array>

#include "keyvalue.h"
#include "tables.h"
#include "testhome.h"
#include "text.h"

using namespace Qt::StringLiterals;

class TextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void wraps();
    void wrappingKeepsTheWords();
    void makesPlainText();
    void knowsNumbers();
    void unifiesLineEnds();
    void escapes();
    void parsesKeyValue();
    void limitsTheKey();
    void ordersNames();
};

void TextTest::wraps()
{
    QCOMPARE(differences(u"wrapped"_s, 3,
                         [](const QStringList &row) -> QString {
                             return wrapRichText(row[0], row[1].toInt());
                         }),
             QString());
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

void TextTest::makesPlainText()
{
    QCOMPARE(plainText(u"<b>No</b> file.<p>Check &quot;it&quot;<br>&amp;lt; now"_s),
             u"No file.\nCheck \"it\"\n&lt; now"_s);
    QCOMPARE(plainText(u"cut <a href"_s), u"cut "_s);
}

void TextTest::knowsNumbers()
{
    QCOMPARE(differences(
                 u"numbers"_s, 2,
                 [](const QStringList &row) -> QString {
                     return (isNumber(row[0]) ? u"yes %1"_s : u"no %1"_s).arg(leadingInt(row[0]));
                 }),
             QString());
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
    const auto parse = [](const QStringList &row) -> QString {
        KeyValue kept {u"stale"_s, u"stale"_s};
        KeyValue resolved;
        const bool isGood = parseKeyValue(row[0].toUtf8(), Escapes::Keep, kept);
        if (isGood != parseKeyValue(row[0].toUtf8(), Escapes::Resolve, resolved))
            return u"undecided"_s;
        return isGood ? kept.key + u'|' + kept.value + u'|' + resolved.value : u"bad"_s;
    };
    QCOMPARE(differences(u"keyvalues"_s, 2, parse), QString());
    KeyValue result;
    QVERIFY(parseKeyValue("a=\xff", Escapes::Keep, result));
    QCOMPARE(result.value, QString(QChar(0xfffd)));
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
