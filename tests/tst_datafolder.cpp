// links: morvane_ui
// How the data folder is found, copied, chosen and loaded.
#include <QDir>
#include <QFileDialog>

#include <sys/stat.h>

#include "fightfixture.h"
#include "global.h"
#include "messagelog.h"
#include "paths.h"
#include "testhome.h"

namespace {

const QStringList AllFolders {"Characters", "Monsters", "Portraits", "Encounters"};

void makeFolders(const QString &path, const QStringList &names)
{
    for (const QString &name : names)
        QVERIFY(QDir().mkpath(path + u'/' + name));
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString dataFolderIn(QStandardPaths::StandardLocation place)
{
    return QStandardPaths::writableLocation(place) + QStringLiteral("/Morvane Data");
}

// One of each kind, so that no loader has to ask.
void addLibrary(const TestDataFolder &folder)
{
    folder.addCharacter(QStringLiteral("Aria"));
    folder.addMonster(QStringLiteral("Rat"));
    folder.write(QStringLiteral("Encounters/den.txt"),
                 QStringLiteral("name=Den\ndescription=\nRat=A\n"));
}

// The program's own folder, where the demo data of a first start lies.
QString demoFolder()
{
    return installFolder() + QStringLiteral("/demo-data");
}

std::function<bool()> inFileDialog(const QString &folder)
{
    return [folder] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return false;
        if (folder.isEmpty()) {
            dialog->reject();
        } else {
            dialog->selectFile(folder);
            static_cast<QDialog *>(dialog)->accept();
        }
        return true;
    };
}

} // namespace

class DataFolderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void treeIsCopiedOnce();
    void brokenTreesAreRefused();
    void placesAreSearchedInOrder();
    void firstStartCopiesTheDemoData();
    void refusedFolderLeavesTheOldFolder();
    void choosingAnotherFolderReplacesTheFight();
    void unsavedWork();
    void messagesReachAnOpenLogOnly();

private:
    void loadOld();
    void checkOld() const;

    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<TestDataFolder> m_old;
};

void DataFolderTest::init()
{
    failOnWarnings();
    QSettings().clear();
    m_window = std::make_unique<MainWindow>();
}

void DataFolderTest::cleanup()
{
    m_window.reset();
    m_old.reset();
    dataRoot = displayRoot = QString();
    for (const auto place : {QStandardPaths::DocumentsLocation,
                             QStandardPaths::AppLocalDataLocation, QStandardPaths::HomeLocation})
        QDir(dataFolderIn(place)).removeRecursively();
}

// A folder with a fight of one character.
void DataFolderTest::loadOld()
{
    m_old = std::make_unique<TestDataFolder>();
    addLibrary(*m_old);
    QString path = m_old->path();
    QString display = path;
    QVERIFY(setDataFolder(path, display));
    appendEvent<SetPartyEvent>(CreatureList(theCharacters->all()), false, QList<CreatureItem>());
}

void DataFolderTest::checkOld() const
{
    QCOMPARE(dataRoot, m_old->path());
    QCOMPARE(theCharacters->count(), 1);
    QCOMPARE(theMonsters->count(), 1);
    QCOMPARE(theHistory->eventCount(), 1);
    QCOMPARE(theEncounter->at(0), theCharacters->at(0));
}

void DataFolderTest::treeIsCopiedOnce()
{
    const QTemporaryDir dir;
    makeFolders(dir.path(), {QStringLiteral("from/sub/deep"), QStringLiteral("from/.hidden")});
    writeFile(dir.filePath(QStringLiteral("from/sub/deep/a.txt")), "a");
    writeFile(dir.filePath(QStringLiteral("from/b.txt")), "b");
    writeFile(dir.filePath(QStringLiteral("from/.c.txt")), "c");
    QFile::setPermissions(dir.filePath(QStringLiteral("from/b.txt")), QFile::ReadOwner);
    makeFolders(dir.path(), {QStringLiteral("to/copy/sub/deep")});
    writeFile(dir.filePath(QStringLiteral("to/copy/sub/deep/a.txt")), "mine");

    QVERIFY(copyFolderTree(dir.filePath(QStringLiteral("from")), dir.filePath(QStringLiteral("to")),
                           QStringLiteral("copy")));
    QCOMPARE(fileBytes(dir.filePath(QStringLiteral("to/copy/sub/deep/a.txt"))), QByteArray("mine"));
    QCOMPARE(fileBytes(dir.filePath(QStringLiteral("to/copy/b.txt"))), QByteArray("b"));
    QVERIFY(QFile::permissions(dir.filePath(QStringLiteral("to/copy/b.txt"))) & QFile::WriteOwner);
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("to/copy/.c.txt"))));
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("to/copy/.hidden"))));
}

void DataFolderTest::brokenTreesAreRefused()
{
    const QTemporaryDir dir;
    QVERIFY(!copyFolderTree(dir.filePath(QStringLiteral("nowhere")), dir.path(),
                            QStringLiteral("copy")));
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("copy"))));
    // A file stands where the folder should come.
    makeFolders(dir.path(), {QStringLiteral("from")});
    writeFile(dir.filePath(QStringLiteral("from/a.txt")), "a");
    writeFile(dir.filePath(QStringLiteral("copy")), "file");
    QVERIFY(
        !copyFolderTree(dir.filePath(QStringLiteral("from")), dir.path(), QStringLiteral("copy")));
    // A folder that holds itself, and what would keep the program waiting.
    QVERIFY(QFile::link(dir.filePath(QStringLiteral("from")),
                        dir.filePath(QStringLiteral("from/circle"))));
    const QByteArray pipe = QFile::encodeName(dir.filePath(QStringLiteral("from/pipe")));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(
        copyFolderTree(dir.filePath(QStringLiteral("from")), dir.path(), QStringLiteral("other")));
    QCOMPARE(QDir(dir.filePath(QStringLiteral("other")))
                 .entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             {QStringLiteral("a.txt")});
}

void DataFolderTest::placesAreSearchedInOrder()
{
    QList<QStandardPaths::StandardLocation> places {QStandardPaths::DocumentsLocation,
                                                    QStandardPaths::AppLocalDataLocation,
                                                    QStandardPaths::HomeLocation};
    // A stored folder with none of the four starts the search.
    const QTemporaryDir empty;
    {
        const TestDataFolder sample;
        addLibrary(sample);
        for (const auto place : places)
            QVERIFY(copyFolderTree(sample.path(), QStandardPaths::writableLocation(place),
                                   QStringLiteral("Morvane Data")));
    }
    while (!places.isEmpty()) {
        QSettings().setValue(QStringLiteral("dataDir/path"), empty.path());
        findDataFolder();
        QCOMPARE(dataRoot, dataFolderIn(places.takeFirst()));
        // One that lacks a folder doesn't count.
        QVERIFY(QDir(dataRoot + QStringLiteral("/Portraits")).removeRecursively());
    }
}

void DataFolderTest::firstStartCopiesTheDemoData()
{
    const bool isOwn = !QFile::exists(demoFolder());
    if (isOwn) {
        TestDataFolder demo;
        addLibrary(demo);
        QVERIFY(copyFolderTree(demo.path(), installFolder(), QStringLiteral("demo-data")));
    }
    dataRoot = QString();
    findDataFolder();
    if (isOwn)
        QDir(demoFolder()).removeRecursively();
    QCOMPARE(dataRoot, dataFolderIn(QStandardPaths::DocumentsLocation));
    QVERIFY(theCharacters->count() > 0);
    QVERIFY(hasAllDataFolders(QDir(dataRoot)));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Morvane DM's Display"));
}

// A folder without the sub-folders is asked about, and the file dialog comes again.
void DataFolderTest::refusedFolderLeavesTheOldFolder()
{
    loadOld();
    const QTemporaryDir bare;
    makeFolders(bare.path(), {QStringLiteral("Characters")});
    Answer choice(inFileDialog(bare.path()));
    Answer refusal(inMessage(QStringLiteral("Select Folder...")));
    std::unique_ptr<Answer> again;
    connect(qApp, &QApplication::focusChanged, &choice, [&] {
        if (refusal.wasAnswered && !again)
            again = std::make_unique<Answer>(inFileDialog(QString()));
    });
    m_window->show();
    m_window->onSetRoot();
    QVERIFY(choice.wasAnswered && refusal.wasAnswered && again && again->wasAnswered);
    checkOld();
    QVERIFY(m_window->isEnabled());
}

void DataFolderTest::choosingAnotherFolderReplacesTheFight()
{
    loadOld();
    m_window->show();
    m_window->findChild<QTableView *>(QStringLiteral("initiativeList"))->selectRow(0);
    const TestDataFolder other;
    addLibrary(other);
    other.addCharacter(QStringLiteral("Cora"));
    Answer answer(inFileDialog(other.path()));
    m_window->onSetRoot();
    QVERIFY(answer.wasAnswered);
    QCOMPARE(QDir(dataRoot), QDir(other.path()));
    QCOMPARE(displayRoot, dataRoot);
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Morvane - ") + QDir(dataRoot).dirName());
    QCOMPARE(theCharacters->count(), 2);
    QCOMPARE(theEncounter->count(), 0);
    QCOMPARE(theHistory->eventCount(), 0);
    QVERIFY(m_window->selectedCreatures().isEmpty());
    // The fight in the old folder waits there.
    QString path = m_old->path();
    QString display = path;
    QVERIFY(setDataFolder(path, display));
    QCOMPARE(theHistory->eventCount(), 1);
    QCOMPARE(theEncounter->count(), 1);
}

void DataFolderTest::unsavedWork()
{
    const QList<UnsavedItems> kinds {{1, QStringLiteral("Aria"), QStringLiteral("%1 Characters")},
                                     {4, QStringLiteral("Rat"), QStringLiteral("%1 Monsters")},
                                     {0, QStringLiteral("Den"), QStringLiteral("%1 Encounters")}};
    QCOMPARE(unsavedWorkText(kinds, QStringLiteral("Why?")),
             QStringLiteral("<b>Aria</b> and 4 Monsters were not saved.<p>Why?"));
    QCOMPARE(unsavedWorkText(kinds.first(1), QString()).left(16),
             QStringLiteral("<b>Aria</b> was "));
}

void DataFolderTest::messagesReachAnOpenLogOnly()
{
    const QString path = QDir::homePath() + QStringLiteral("/morvane.log");
    logMessageHandler(QtWarningMsg, QMessageLogContext(), QStringLiteral("lost"));
    QVERIFY(!QFile::exists(path));
    logFile.setFileName(QDir::homePath() + QStringLiteral("/other.log"));
    QVERIFY(logFile.open(QIODevice::WriteOnly));
    logMessageHandler(QtDebugMsg, QMessageLogContext(), QStringLiteral("one"));
    logMessageHandler(QtWarningMsg, QMessageLogContext(), QStringLiteral("two"));
    logMessageHandler(QtInfoMsg, QMessageLogContext(), QStringLiteral("three"));
    logMessageHandler(QtCriticalMsg, QMessageLogContext(), QStringLiteral("four"));
    logFile.close();
    QCOMPARE(fileBytes(path), QByteArray("one\nWarning: two\nCritical: four\n"));
}

MORVANE_TEST_MAIN(QApplication, DataFolderTest)
#include "tst_datafolder.moc"
