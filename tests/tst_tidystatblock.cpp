// links: morvane_reports
//
// Faulty copies of stat blocks against the well-formed text that they come of.
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>

#include "creaturedata.h"
#include "creaturereport.h"
#include "statblockparser.h"
#include "tables.h"
#include "testhome.h"
#include "tidystatblock.h"

using namespace Qt::StringLiterals;

namespace {

QString read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QJsonObject recordOf(const QString &text)
{
    CreatureData data;
    StatBlockParser::parse(data, text, true, QString());
    return recordReport(data);
}

} // namespace

class TidyStatBlockTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void mendsFaults();
    void faultyCopiesReadAsTheirSource_data();
    void faultyCopiesReadAsTheirSource();
    void leavesWellFormedTexts();
    void longTextsTakeLinearTime_data();
    void longTextsTakeLinearTime();
};

// A second run finds nothing to do.
void TidyStatBlockTest::mendsFaults()
{
    const auto tidied = [](const QStringList &row) -> QString {
        const TidiedText result = tidyStatBlock(row[0]);
        const TidiedText again = tidyStatBlock(result.text);
        const bool isDone = again.text == result.text && again.changes.isEmpty()
            && result.changes.isEmpty() == (result.text == row[0]);
        return isDone ? result.text : again.text + u" (again)";
    };
    QCOMPARE(differences(u"tidying"_s, 2, tidied), QString());
    QCOMPARE(tidyStatBlock(u"Eel\nHP: 30\nAC: 14, Refl ex: 12"_s).changes,
             QStringList({u"Joined words that a copy had split"_s,
                          u"Removed colons behind names of numbers"_s}));
}

void TidyStatBlockTest::faultyCopiesReadAsTheirSource_data()
{
    useTable(u"faultycopies"_s, {"source", "words", "faulty"});
}

// The fault costs something, and the tidied copy reads as its source does.
void TidyStatBlockTest::faultyCopiesReadAsTheirSource()
{
    QFETCH(QString, source);
    QFETCH(QString, words);
    QFETCH(QString, faulty);
    const QString text = read(TEST_DATA u"/statblocks/"_s + source + u".txt"_s);
    QVERIFY(text.contains(words));
    const QString copy = QString(text).replace(words, faulty);
    const QJsonObject expected = recordOf(text);
    QVERIFY(recordOf(copy) != expected);
    const TidiedText tidied = tidyStatBlock(copy);
    QVERIFY2(recordOf(tidied.text) == expected, qPrintable(tidied.text));
    QVERIFY(!tidied.changes.isEmpty());
    QCOMPARE(tidyStatBlock(tidied.text).text, tidied.text);
}

void TidyStatBlockTest::leavesWellFormedTexts()
{
    const QStringList folders {TEST_DATA u"/statblocks"_s, TEST_DATA u"/xml"_s,
                               SOURCE_ROOT u"/demo-data/Monsters"_s,
                               SOURCE_ROOT u"/demo-data/Characters"_s};
    for (const QString &folder : folders) {
        const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files);
        QVERIFY(!files.isEmpty());
        for (const QFileInfo &file : files) {
            const QString text = read(file.filePath());
            const TidiedText tidied = tidyStatBlock(text);
            QCOMPARE(tidied.text, text);
            QCOMPARE(tidied.changes, QStringList());
        }
    }
    const QString broken = u"Eel\nHP: 30"_s + QChar(0xd800);
    QCOMPARE(tidyStatBlock(broken).text, broken);
}

void TidyStatBlockTest::longTextsTakeLinearTime_data()
{
    useTable(u"longcopies"_s, {"start", "unit"});
}

// A million characters of what a pattern might look through once too often.
void TidyStatBlockTest::longTextsTakeLinearTime()
{
    QFETCH(QString, start);
    QFETCH(QString, unit);
    const auto timeOf = [&](qsizetype size) {
        const QString text = start + unit.repeated(size / unit.size());
        QElapsedTimer timer;
        timer.start();
        tidyStatBlock(text);
        return timer.nsecsElapsed() / 1e6;
    };
    const double small = timeOf(62'500);
    const double large = timeOf(1'000'000);
    // 16 times the text; a square would be 256 times.
    QVERIFY2(large < 64 * small + 100, qPrintable(u"%1 ms, %2 ms"_s.arg(small).arg(large)));
}

MORVANE_TEST_MAIN(QGuiApplication, TidyStatBlockTest)

#include "tst_tidystatblock.moc"
