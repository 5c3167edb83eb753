// links: morvane_ui
// Two programs on one data folder: who has the lock writes, and whoever comes second only looks.
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QStatusBar>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

#include "creature.h"
#include "datatable.h"
#include "encounter.h"
#include "fightfixture.h"
#include "history.h"
#include "loglock.h"
#include "paths.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int Tries = 13;

// --- the program that came first: a command for each line of its input ---

void randomCommand(QRandomGenerator &chance)
{
    const QList<Creature *> all = theEncounter->creatures().list();
    const QList<Creature *> one {all.at(chance.bounded(int(all.size())))};
    switch (chance.bounded(4)) {
    case 0:
        appendEvent<DamageEvent>(nullptr, one, 1 + chance.bounded(5));
        break;
    case 1:
        appendEvent<SetTempHPEvent>(one, 1 + chance.bounded(9));
        break;
    case 2:
        appendEvent<ShowHideEvent>(one.first(), !one.first()->isHidden());
        break;
    default:
        if (theHistory->position() > 0) // the party stays
            theHistory->stepBack();
        appendEvent<HealEvent>(nullptr, one, 0, 1 + chance.bounded(5));
    }
}

// Answers each line with the number of its events. The end of the input ends it, with the fight as
// it knows it in the file `memory`.
int playFirst(const QString &folder, const QString &memory, uint seed)
{
    const MainWindow window;
    QString path = folder;
    QString display = folder;
    if (!setDataFolder(path, display) || dataReadOnly)
        return 1;
    appendEvent<SetPartyEvent>(CreatureList(theCharacters->all()), false, QList<CreatureItem>());
    QRandomGenerator chance(seed);
    QTextStream in(stdin);
    QTextStream out(stdout);
    out << theHistory->eventCount() << Qt::endl;
    while (!in.readLine().isNull()) {
        randomCommand(chance);
        out << theHistory->eventCount() << Qt::endl;
    }
    return theHistory->writeWaiting() && theHistory->saveLogAs(memory) ? 0 : 1;
}

class FirstProgram : public QProcess {
public:
    FirstProgram(const QString &folder, const QString &memory, uint seed)
    {
        setProcessChannelMode(QProcess::ForwardedErrorChannel);
        start(QCoreApplication::applicationFilePath(),
              {u"--first"_s, folder, memory, QString::number(seed)});
        events = answer();
    }
    ~FirstProgram() override
    {
        closeWriteChannel();
        waitForFinished();
    }

    void command()
    {
        write("\n");
        events = answer();
    }
    bool quit()
    {
        closeWriteChannel();
        return waitForFinished() && exitStatus() == NormalExit && exitCode() == 0;
    }
    void killHard()
    {
        kill();
        waitForFinished();
    }

    int events = 0;

private:
    int answer()
    {
        while (!canReadLine() && waitForReadyRead()) { }
        return readLine().trimmed().toInt();
    }
};

// Root may write anything: for as long as this lives, the files are asked for by somebody else.
class PlainUser {
public:
    PlainUser() { become(geteuid() == 0 ? Nobody : geteuid()); }
    ~PlainUser() { become(getuid()); }
    PlainUser(const PlainUser &) = delete;
    PlainUser &operator=(const PlainUser &) = delete;

    static void become(uid_t user)
    {
        if (geteuid() != user && seteuid(user) != 0)
            qFatal("cannot change the user");
    }

private:
    static constexpr uid_t Nobody = 65534;
};

QByteArray lockOf(qint64 process, const QString &program, const QString &host)
{
    return u"%1\n%2\n%3\n\n\n"_s.arg(process).arg(program, host).toUtf8();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

class LogLockTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void foundFiles_data();
    void foundFiles();
    void oneFolderByManyRoads();
    void lockThatWentIsNotAnothers();
    void firstFightStaysByteForByte();
    void killedProgramIsFollowed();
    void choiceIsTakenBack();
    void sealedLogIsShown_data();
    void sealedLogIsShown();
    void folderWithoutALogIsEntered();

private:
    QString lockPath() const { return m_fight->folder.file(u"history.log.lock"_s); }
    QString memory() const { return m_home.filePath(u"memory.log"_s); }
    QLabel *label() const { return find<QLabel>("lookOnlyLabel"); }
    QPushButton *takeOver() const { return find<QPushButton>("takeOverButton"); }
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_fight->window().findChild<Widget *>(QLatin1String(name));
    }
    void openLooking(QString &shown);
    void tryEveryCommand();

    QTemporaryDir m_home;
    std::unique_ptr<FightFixture> m_fight;
};

void LogLockTest::init()
{
    failOnWarnings();
    m_fight = std::make_unique<FightFixture>();
    m_fight->folder.addCharacter(u"Aria"_s);
    m_fight->folder.addCharacter(u"Bram"_s);
    m_fight->folder.addMonster(u"Rat"_s);
}

void LogLockTest::cleanup()
{
    if (QTest::currentTestFailed())
        qInfo("--seed %u", RandomTest::seed());
    m_fight.reset();
    dataReadOnly = false;
}

void LogLockTest::openLooking(QString &shown)
{
    Answer answer(inMessage(u"Look Only"_s, &shown));
    m_fight->open();
    QVERIFY(answer.wasAnswered);
    QVERIFY(dataReadOnly);
}

// None of them may open a dialog, which would wait for ever, or leave a trace.
void LogLockTest::tryEveryCommand()
{
    MainWindow &window = m_fight->window();
    m_fight->table()->selectAll();
    m_fight->click(0);
    m_fight->hpBox()->setValue(7);
    const QStringList open {u"setRoot"_s,   u"stepBack"_s,      u"stepForward"_s,
                            u"dmsWindow"_s, u"managerWindow"_s, u"characterWindow"_s,
                            u"quit"_s,      u"about"_s,         u"playersWindow"_s};
    const QList<QAction *> actions =
        window.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QAction *action : actions)
        QVERIFY2(!action->isEnabled() || open.contains(action->objectName()),
                 qPrintable(action->objectName()));
    const QList<Creature *> creatures = window.selectedCreatures();
    QCOMPARE(creatures.size(), 1);
    window.statusBar()->clearMessage();
    window.focusHPBox();
    QTest::keyClick(m_fight->hpBox(), Qt::Key_Return);
    QVERIFY(window.statusBar()->currentMessage().startsWith(u"Looking only"_s));
    for (void (MainWindow::*slot)() :
         {&MainWindow::onHit, &MainWindow::onHeal, &MainWindow::onSetTempHP,
          &MainWindow::onShowAndHide, &MainWindow::onSetAlias, &MainWindow::onRemoveCreatures,
          &MainWindow::onStartStopEncounter, &MainWindow::onNextTurn, &MainWindow::onJumpIn,
          &MainWindow::onUpInitiative, &MainWindow::onExtendedRest,
          &MainWindow::onAddConditionOrEffect}) {
        window.statusBar()->clearMessage();
        (window.*slot)();
        QVERIFY(window.statusBar()->currentMessage().startsWith(u"Looking only"_s));
    }
    window.removeCondEffect(0);
    window.onDelay();
    window.onReady();
    theHistory->truncate();
    QVERIFY(!theHistory->backupLog());
    theCharacters->at(0)->setModified(true);
    theCharacters->saveAll();
    QVERIFY(theCharacters->at(0)->isModified());
    theCharacters->at(0)->setModified(false);
}

void LogLockTest::foundFiles_data()
{
    addColumns<QByteArray, int, int>({"content", "age", "result"});
    const QString host = QSysInfo::machineHostName();
    const int taken = int(LogLock::Result::Taken);
    const int held = int(LogLock::Result::HeldElsewhere);
    const int impossible = int(LogLock::Result::Impossible);
    QTest::newRow("empty, just made") << QByteArray() << 0 << held;
    QTest::newRow("empty, of a power cut") << QByteArray() << 60 << taken;
    QTest::newRow("zeros, of a power cut") << QByteArray(40, '\0') << 60 << taken;
    QTest::newRow("something else") << QByteArray("notes\nof mine\n") << 60 << impossible;
    QTest::newRow("something large") << QByteArray(5000, '1') << 60 << impossible;
    QTest::newRow("dead process") << lockOf(0x7fffffff, u"morvane"_s, host) << 0 << taken;
    QTest::newRow("its number taken by another") << lockOf(1, u"morvane"_s, host) << 0 << taken;
    QTest::newRow("its number is ours")
        << lockOf(QCoreApplication::applicationPid(), u"tst_loglock"_s, host) << 0 << taken;
    QTest::newRow("other host") << lockOf(0x7fffffff, u"morvane"_s, u"attic"_s) << 0 << held;
    QTest::newRow("other host, last year")
        << lockOf(0x7fffffff, u"morvane"_s, u"attic"_s) << 31'000'000 << held;
}

void LogLockTest::foundFiles()
{
    const auto [content, age, result] = fetch<QByteArray, int, int>({"content", "age", "result"});
    writeFile(lockPath(), content);
    const utimbuf then {time(nullptr) - age, time(nullptr) - age};
    QCOMPARE(utime(QFile::encodeName(lockPath()).constData(), &then), 0);
    {
        LogLock lock(m_fight->folder.path());
        const bool isTaken = result == int(LogLock::Result::Taken);
        QCOMPARE(int(lock.take()), result);
        QCOMPARE(lock.isHeldElsewhere(), result == int(LogLock::Result::HeldElsewhere));
        QCOMPARE(lock.isTaken(), isTaken);
        QCOMPARE(lock.obstacle().isEmpty(), isTaken);
        QCOMPARE(lock.isHolderOutOfSight(), result == int(LogLock::Result::HeldElsewhere));
        if (isTaken)
            return;
    }
    QCOMPARE(m_fight->folder.read(u"history.log.lock"_s), content);
}

void LogLockTest::oneFolderByManyRoads()
{
    const QString link = m_home.filePath(u"link"_s);
    QVERIFY(QFile::link(m_fight->folder.path(), link));
    LogLock lock(m_fight->folder.path() + u"/Monsters/.."_s);
    QCOMPARE(lock.take(), LogLock::Result::Taken);
    QVERIFY(lock.isOf(link) && lock.isOf(m_fight->folder.path() + u'/'));
    QVERIFY(!lock.isOf(m_home.path()));
    LogLock other(link);
    QCOMPARE(other.take(), LogLock::Result::HeldElsewhere);
    lock.giveBack();
    QCOMPARE(other.take(), LogLock::Result::Taken);
    other.giveBack();
    // What is no file is neither waited for nor followed.
    for (const QString &name : {u"history.log.lock"_s, u"history.log.lock.rmlock"_s}) {
        const QByteArray path = QFile::encodeName(m_fight->folder.file(name));
        QCOMPARE(mkfifo(path.constData(), 0600), 0);
        QCOMPARE(lock.take(), LogLock::Result::Impossible);
        QVERIFY(!lock.isHeldElsewhere());
        QCOMPARE(unlink(path.constData()), 0);
        QCOMPARE(symlink("nowhere", path.constData()), 0);
        QCOMPARE(lock.take(), LogLock::Result::Impossible);
        QCOMPARE(unlink(path.constData()), 0);
        QVERIFY(QDir().mkpath(m_fight->folder.file(name)));
        QCOMPARE(lock.take(), LogLock::Result::Impossible);
        QCOMPARE(lock.obstacle(), name + u" is in the way"_s);
        QVERIFY(QDir().rmdir(m_fight->folder.file(name)));
    }
}

// The folder went with the lock, and another program was quicker.
void LogLockTest::lockThatWentIsNotAnothers()
{
    const QByteArray another = lockOf(1, u"morvane"_s, u"attic"_s);
    {
        LogLock lock(m_fight->folder.path());
        QCOMPARE(lock.take(), LogLock::Result::Taken);
        QVERIFY(QFile::remove(lockPath()));
        lock.renew();
        QVERIFY(lock.isTaken() && QFile::exists(lockPath()));
        writeFile(lockPath(), another);
    }
    QCOMPARE(m_fight->folder.read(u"history.log.lock"_s), another);
    // One that nobody may read names no holder.
    QCOMPARE(chmod(QFile::encodeName(m_fight->folder.path()).constData(), 0777), 0);
    QCOMPARE(chmod(QFile::encodeName(lockPath()).constData(), 0), 0);
    const PlainUser user;
    LogLock lock(m_fight->folder.path());
    QCOMPARE(lock.take(), LogLock::Result::HeldElsewhere);
    QCOMPARE(lock.obstacle(), u"in use by another program"_s);
    QVERIFY(lock.isHolderOutOfSight());
}

void LogLockTest::firstFightStaysByteForByte()
{
    QRandomGenerator chance(RandomTest::seed());
    for (int i = 0; i < RandomTest::count(Tries); ++i) {
        const uint seed = chance.generate();
        QFile::remove(m_fight->folder.file(u"history.log"_s));
        FirstProgram first(m_fight->folder.path(), memory(), seed);
        QCOMPARE(first.events, 1);
        for (int commands = chance.bounded(8); commands > 0; --commands)
            first.command();
        QString shown;
        openLooking(shown);
        QVERIFY2(shown.contains(u"in use by tst_loglock, process %1 on "_s.arg(first.processId())),
                 qPrintable(shown));
        const int seen = theHistory->eventCount();
        QCOMPARE(seen, first.events);
        first.command();
        const QMap<QString, QByteArray> before = m_fight->folder.files();
        tryEveryCommand();
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(theHistory->eventCount(), seen);
        theHistory->moveTo(0);
        theHistory->moveTo(seen - 1);
        QCOMPARE(m_fight->folder.files(), before);
        first.command();
        m_fight->close();
        first.command();
        QVERIFY(first.quit());
        QFile expected(memory());
        QVERIFY(expected.open(QIODevice::ReadOnly));
        QVERIFY2(m_fight->folder.read(u"history.log"_s) == expected.readAll(),
                 qPrintable(u"seed %1"_s.arg(seed)));
        QVERIFY(!QFile::exists(lockPath()));
    }
}

void LogLockTest::killedProgramIsFollowed()
{
    FirstProgram first(m_fight->folder.path(), memory(), 1);
    QString shown;
    openLooking(shown);
    QVERIFY(m_fight->window().windowTitle().endsWith(u" - Looking Only"_s));
    QVERIFY(label()->isVisible() && label()->text().contains(u"in use by tst_loglock"_s));
    QVERIFY(!takeOver()->isEnabled());
    first.command();
    first.command();
    first.killHard();
    QVERIFY(QFile::exists(lockPath()));
    QTRY_VERIFY(takeOver()->isEnabled());
    QVERIFY(label()->text().contains(u"no longer in use"_s));
    QTest::mouseClick(takeOver(), Qt::LeftButton);
    QTRY_VERIFY(!dataReadOnly);
    QCOMPARE(theHistory->eventCount(), first.events);
    QVERIFY(!label()->isVisible());
    QVERIFY(!m_fight->window().windowTitle().contains(u"Looking"_s));
    m_fight->setParty();
    QCOMPARE(theHistory->eventCount(), first.events + 1);
}

// A folder that isn't entered leaves all locks where they are.
void LogLockTest::choiceIsTakenBack()
{
    const TestDataFolder other;
    other.addCharacter(u"Cora"_s);
    other.addMonster(u"Rat"_s);
    other.write(u"Encounters/rest.txt"_s, u"name=Rest\ndescription=\n"_s);
    m_fight->openWithThree();
    QString path = other.path();
    QString display = path;
    {
        const FirstProgram first(other.path(), memory(), 1);
        Answer answer(inMessage(u"Cancel"_s));
        QVERIFY(!setDataFolder(path, display));
        QVERIFY(answer.wasAnswered);
        QVERIFY(QFile::exists(other.file(u"history.log.lock"_s)));
        QCOMPARE(dataRoot, m_fight->folder.path());
        m_fight->addMonster(u"Rat"_s, u"B"_s);
    }
    // What is ours may be chosen again.
    path = m_home.filePath(u"road"_s);
    QVERIFY(QFile::link(m_fight->folder.path(), path));
    QVERIFY(setDataFolder(path, display));
    QCOMPARE(theEncounter->count(), 4);
    QVERIFY(!dataReadOnly && QFile::exists(lockPath()));
    path = other.path();
    QVERIFY(setDataFolder(path, display));
    QCOMPARE(theEncounter->count(), 1);
    QVERIFY(!QFile::exists(lockPath()));
}

void LogLockTest::sealedLogIsShown_data()
{
    addColumns<int, int, bool, QString>({"folderMode", "logMode", "blocked", "reason"});
    QTest::newRow("folder") << 0555 << 0444 << false << u"the folder can't be written"_s;
    QTest::newRow("log") << 0777 << 0444 << false << u"the history file can't be written"_s;
    QTest::newRow("lock") << 0777 << 0666 << true << u"history.log.lock is in the way"_s;
}

void LogLockTest::sealedLogIsShown()
{
    const auto [folderMode, logMode, blocked, reason] =
        fetch<int, int, bool, QString>({"folderMode", "logMode", "blocked", "reason"});
    const QByteArray folder = QFile::encodeName(m_fight->folder.path());
    const QByteArray log = folder + "/history.log";
    m_fight->openWithThree();
    m_fight->close();
    if (blocked)
        QVERIFY(QDir().mkpath(lockPath()));
    QCOMPARE(chmod(log.constData(), mode_t(logMode)), 0);
    QCOMPARE(chmod(folder.constData(), mode_t(folderMode)), 0);
    const PlainUser user;
    const QMap<QString, QByteArray> before = m_fight->folder.files();
    QString shown;
    openLooking(shown);
    QVERIFY2(shown.contains(reason) && label()->text().contains(reason), qPrintable(shown));
    QCOMPARE(theEncounter->count(), 3);
    tryEveryCommand();
    QCOMPARE(m_fight->folder.files(), before);

    // It is tried again whenever the user likes.
    QVERIFY(takeOver()->isEnabled());
    Answer again(inMessage(u"Cancel"_s));
    QTest::mouseClick(takeOver(), Qt::LeftButton);
    QTRY_VERIFY(again.wasAnswered);
    QVERIFY(dataReadOnly && label()->isVisible());
    const uid_t plain = geteuid();
    PlainUser::become(getuid());
    QCOMPARE(chmod(folder.constData(), 0777), 0);
    QCOMPARE(chmod(log.constData(), 0666), 0);
    QVERIFY(!blocked || QDir().rmdir(lockPath()));
    PlainUser::become(plain);
    QTest::mouseClick(takeOver(), Qt::LeftButton);
    QTRY_VERIFY(!dataReadOnly);
    m_fight->addMonster(u"Rat"_s, u"B"_s);
    QCOMPARE(theHistory->eventCount(), 3);
    m_fight->close();
}

// There is nothing to look at: the first event tells.
void LogLockTest::folderWithoutALogIsEntered()
{
    const QByteArray folder = QFile::encodeName(m_fight->folder.path());
    QCOMPARE(chmod(folder.constData(), 0555), 0);
    {
        const PlainUser user;
        m_fight->open();
        QVERIFY(!dataReadOnly);
        QString shown;
        Answer answer(inMessage(u"OK"_s, &shown));
        m_fight->setParty();
        QVERIFY(answer.wasAnswered && shown.startsWith(u"Cannot Create History File|Unable"_s));
        m_fight->close();
    }
    QCOMPARE(chmod(folder.constData(), 0777), 0);
}

int main(int argc, char **argv)
{
    const TestHome home;
    RandomTest::takeArguments(argc, argv);
    const QApplication app(argc, argv);
    QApplication::setOrganizationName(u"Tolbrick"_s);
    QApplication::setApplicationName(u"Morvane"_s);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == u"--first"_s)
        return playFirst(arguments.value(2), arguments.value(3), arguments.value(4).toUInt());
    LogLockTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_loglock.moc"
