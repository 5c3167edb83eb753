// links: morvane_windowfuzztargets
// Replays the seeds of the fuzzers, and each of them cut short and with flipped bits.
#include <QApplication>
#include <QDir>
#include <QFile>

#include "targets.h"
#include "testhome.h"

namespace {

using Reader = bool (*)(QByteArrayView);

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Q_DECLARE_METATYPE(Reader)

class CorpusTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // The toolkit says so where a picture is broken.
        if (!QByteArray(QTest::currentDataTag()).startsWith("portrait/"))
            failOnWarnings();
    }
    void readsSeeds_data() { addSeeds(); }
    void readsSeeds();
    void survivesCuts_data() { addSeeds(); }
    void survivesCuts();
    void survivesFlippedBits_data() { addSeeds(); }
    void survivesFlippedBits();

private:
    static void addSeeds();
};

void CorpusTest::addSeeds()
{
    QTest::addColumn<Reader>("reader");
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<int>("tries");
    struct Corpus {
        QString name;
        Reader reader;
        int tries = 401; // with changed bytes
    };
    const QList<Corpus> corpora = {
        {QStringLiteral("log"), &Fuzz::replayLog},
        {QStringLiteral("keyform"), &Fuzz::readKeyFormFile},
        {QStringLiteral("statblock"), &Fuzz::readStatBlockFile},
        {QStringLiteral("tidying"), &Fuzz::tidyCopiedText},
        {QStringLiteral("encounter"), &Fuzz::readEncounterFile},
        {QStringLiteral("monsterxml"), &Fuzz::readMonsterXml},
        {QStringLiteral("characterxml"), &Fuzz::readCharacterXml},
        {QStringLiteral("portrait"), &Fuzz::showPortrait},
        {QStringLiteral("creaturefile"), &Fuzz::loadCreatureFile, 101},
        {QStringLiteral("settings"), &Fuzz::openWithSettings, 17},
        {QStringLiteral("painting"), &Fuzz::paintTexts, 17},
    };
    for (const auto &[name, reader, tries] : corpora) {
        const QDir folder(QStringLiteral(SOURCE_ROOT "/fuzz/corpus/") + name);
        const QStringList seeds = folder.entryList(QDir::Files);
        QVERIFY2(!seeds.isEmpty(), qPrintable(name));
        for (const QString &seed : seeds)
            QTest::addRow("%s/%s", qPrintable(name), qPrintable(seed))
                << reader << readFile(folder.filePath(seed)) << tries;
    }
}

// A seed whose name begins with "good" must still be read, or the corpus has gone stale.
void CorpusTest::readsSeeds()
{
    QFETCH(Reader, reader);
    QFETCH(QByteArray, seed);
    const bool read = reader(seed);
    if (QByteArray(QTest::currentDataTag()).contains("/good"))
        QVERIFY(read);
}

// A step that shares no factor with common field sizes meets every kind of place.
void CorpusTest::survivesCuts()
{
    QFETCH(Reader, reader);
    QFETCH(QByteArray, seed);
    QFETCH(int, tries);
    for (qsizetype size = 0; size < seed.size(); size += 1 + seed.size() / tries)
        reader(QByteArrayView(seed).first(size));
}

void CorpusTest::survivesFlippedBits()
{
    QFETCH(Reader, reader);
    QFETCH(QByteArray, seed);
    QFETCH(int, tries);
    for (qsizetype bit = 0; bit < seed.size() * 8; bit += 1 + seed.size() * 8 / tries) {
        QByteArray damaged = seed;
        damaged[bit / 8] = char(damaged[bit / 8] ^ (1 << (bit % 8)));
        reader(damaged);
    }
}

MORVANE_TEST_MAIN(QApplication, CorpusTest)

#include "tst_corpus.moc"
