// The services of the base layer: terms, paths, saving, the tracker, the stand-in for windows.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <csignal>
#include <set>
#include <sys/resource.h>
#include <unistd.h>

#include "dice.h"
#include "memorytracker.h"
#include "paths.h"
#include "safefile.h"
#include "scriptedwindows.h"
#include "terms.h"
#include "testhome.h"

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Lets no file of the process grow beyond `bytes`: what a full disk looks like from inside.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit {bytes, m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_old); }
    Q_DISABLE_COPY(FileSizeLimit)

private:
    rlimit m_old {};
};

} // namespace

class BaseTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void termsComeFromAFile();
    void aBadLineEndsTheTerms();
    void pathsUseTheRoot();
    void savesAsAWhole();
    void aShortWriteLeavesTheOldFile();
    void anUnwritableFolderLeavesTheOldFile();
    void trackerListsWhatIsLeft();
    void diceStayInRange();

private:
    QTemporaryDir m_dir;
};

void BaseTest::init()
{
    failOnWarnings();
    setDefaultTerms();
    dataRoot = m_dir.path();
}

void BaseTest::cleanup()
{
    dataRoot = QString();
    setDefaultTerms();
}

void BaseTest::termsComeFromAFile()
{
    ScriptedWindows windows;
    writeFile(m_dir.filePath(QStringLiteral("terms.txt")),
              "# our words\r\nsr-action = Breather \r\nSR-ACTION=no\r\nunknown=no\r\n\r\n"
              "b-state=Half\\\\Dead");
    loadTerms();
    QCOMPARE(term(Term::ShortRest), QStringLiteral("Breather"));
    QCOMPARE(term(Term::Bloodied), QStringLiteral("Half\\Dead"));
    QCOMPARE(term(Term::ExtendedRest), QStringLiteral("Extended Rest"));
    QVERIFY(!defaultTerms);

    QVERIFY(QFile::remove(m_dir.filePath(QStringLiteral("terms.txt"))));
    loadTerms();
    QCOMPARE(term(Term::ShortRest), QStringLiteral("Short Rest"));
}

void BaseTest::aBadLineEndsTheTerms()
{
    writeFile(m_dir.filePath(QStringLiteral("terms.txt")),
              "sr-action=Nap\n" + QByteArray(401, 'k') + "=v\ner-action=Sleep\n");
    loadTerms();
    QCOMPARE(term(Term::ShortRest), QStringLiteral("Nap"));
    QCOMPARE(term(Term::ExtendedRest), QStringLiteral("Extended Rest"));
    QVERIFY(QFile::remove(m_dir.filePath(QStringLiteral("terms.txt"))));
}

void BaseTest::pathsUseTheRoot()
{
    dataRoot = QStringLiteral("/games/100%1");
    QCOMPARE(encounterPath(QStringLiteral("a%2.txt")),
             QStringLiteral("/games/100%1/Encounters/a%2.txt"));
    QCOMPARE(creaturePath(QStringLiteral("rat.txt"), true, QStringLiteral("/other")),
             QStringLiteral("/other/Monsters/rat.txt"));
    QCOMPARE(creaturePath(QStringLiteral("aria.txt"), false),
             QStringLiteral("/games/100%1/Characters/aria.txt"));
    QCOMPARE(portraitPath(QStringLiteral("heroes\\old/aria.png")),
             QStringLiteral("/games/100%1/Portraits/heroes/old/aria.png"));
    QCOMPARE(historyPath(), QStringLiteral("/games/100%1/history.log"));
}

void BaseTest::savesAsAWhole()
{
    const QString path = m_dir.filePath(QStringLiteral("rat.txt"));
    QVERIFY(saveWhole(path, "group=Rat\r\n"));
    QVERIFY(saveWhole(path, "short"));
    QCOMPARE(readFile(path), QByteArray("short"));
    QVERIFY(saveWhole(path, QByteArray()));
    QCOMPARE(readFile(path), QByteArray());
    QVERIFY(QFile::remove(path));
}

void BaseTest::aShortWriteLeavesTheOldFile()
{
    const QString path = m_dir.filePath(QStringLiteral("rat.txt"));
    QVERIFY(saveWhole(path, "old"));
    for (const qsizetype size : {qsizetype(6000), qsizetype(1000000)}) {
        bool saved = true;
        {
            const FileSizeLimit limit(5000);
            saved = saveWhole(path, QByteArray(size, 'x'));
        }
        QVERIFY(!saved);
        QCOMPARE(readFile(path), QByteArray("old"));
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files), QStringList(QStringLiteral("rat.txt")));
    }
    QVERIFY(QFile::remove(path));
}

void BaseTest::anUnwritableFolderLeavesTheOldFile()
{
    if (geteuid() == 0)
        QSKIP("Root may write everywhere");
    const QString folder = m_dir.filePath(QStringLiteral("closed"));
    QVERIFY(QDir().mkpath(folder));
    const QString path = folder + QStringLiteral("/rat.txt");
    QVERIFY(saveWhole(path, "old"));
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    const bool saved = saveWhole(path, "new");
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(!saved);
    QCOMPARE(readFile(path), QByteArray("old"));
}

void BaseTest::trackerListsWhatIsLeft()
{
    MemoryTracker::clear();
    const auto *low = reinterpret_cast<const void *>(0x1000);
    const auto *high = reinterpret_cast<const void *>(0x2000);
    MemoryTracker::add(high, 10, "event.cpp");
    MemoryTracker::add(low, 20, nullptr);
    QCOMPARE(MemoryTracker::count(), 2);
    QTest::ignoreMessage(QtDebugMsg, "MM: 0x1000 (#1) ?:20 Not free");
    QTest::ignoreMessage(QtDebugMsg, "MM: 0x2000 (#0) event.cpp:10 Not free");
    MemoryTracker::clear();
    QCOMPARE(MemoryTracker::count(), 0);

    MemoryTracker::add(high, 30, "event.cpp");
    QTest::ignoreMessage(QtDebugMsg, "MM: 0x2000 (#0) event.cpp:30 Not free");
    MemoryTracker::clear();
}

void BaseTest::diceStayInRange()
{
    std::set<int> seen;
    for (int i = 0; i < 2000; ++i)
        seen.insert(Dice::roll(20));
    QCOMPARE(*seen.begin(), 1);
    QCOMPARE(*seen.rbegin(), 20);
    QCOMPARE(seen.size(), size_t(20));
}

MORVANE_TEST_MAIN(QGuiApplication, BaseTest)

#include "tst_base.moc"
