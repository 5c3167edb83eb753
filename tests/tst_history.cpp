#include <QDir>
#include <QFile>
#include <QScopedValueRollback>
#include <QSignalSpy>
#include <functional>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "datatable.h"
#include "history.h"
#include "loggedevent.h"
#include "objectstream.h"
#include "paths.h"
#include "scriptedwindows.h"
#include "switchboard.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class HistoryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void moveToBracketsItsSteps();
    void truncateRemovesTheRest();
    void eachCommandIsSynced();
    void recentVisibleEvents_data();
    void recentVisibleEvents();

    void loadStopsAtAnUnknownEvent();
    void laterVersionIsRefused();
    void logThatCannotBeOpened_data();
    void logThatCannotBeOpened();
    void readOnlyTouchesNothing_data();
    void readOnlyTouchesNothing();

    void backupThatFailsLeavesEverything();
    void foreignChangesCostNothing_data();
    void foreignChangesCostNothing();
    void truncatingSparesAForeignLog();
    void damagedLogIsCopied_data();
    void damagedLogIsCopied();

private:
    void play(const QStringList &texts);
    QByteArray log() const { return m_folder->read(u"history.log"_s); }
    void writeLog(const QByteArray &bytes) const;
    QStringList backups() const;

    std::unique_ptr<TestDataFolder> m_folder;
    std::unique_ptr<ScriptedWindows> m_windows;
    std::unique_ptr<History> m_history;
};

namespace {

const QStringList Three {u"one"_s, u"two"_s, u"three"_s};

// What ends a log, and a type that no version has given.
const QByteArray EndMarker(2, '\0');
const QByteArray UnknownEvent("\x2c\x01\x04\xe7\x03\0\0\x20\x03\0", 10);

} // namespace

void HistoryTest::init()
{
    failOnWarnings();
    m_folder = std::make_unique<TestDataFolder>();
    m_windows = std::make_unique<ScriptedWindows>();
    m_history = std::make_unique<History>();
    LoggedEvent::journal.clear();
}

void HistoryTest::cleanup()
{
    m_history.reset();
    m_windows.reset();
    m_folder.reset();
}

void HistoryTest::play(const QStringList &texts)
{
    for (const QString &text : texts)
        m_history->doEvent(new LoggedEvent(text, m_history->getStream()));
}

void HistoryTest::writeLog(const QByteArray &bytes) const
{
    QFile file(historyPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

// The files of the "History" folder.
QStringList HistoryTest::backups() const
{
    return QDir(m_folder->file(u"History"_s)).entryList(QDir::Files, QDir::Name);
}

void HistoryTest::moveToBracketsItsSteps()
{
    play(Three);
    QSignalSpy changed(m_history.get(), &History::doHistoryChanged);
    QSignalSpy disabled(switchBoard(), &SwitchBoard::doDisableWidgetDisplay);
    QSignalSpy enabled(switchBoard(), &SwitchBoard::doEnableWidgetDisplay);
    m_history->moveTo(0);
    QCOMPARE(m_history->position(), 0);
    QCOMPARE(LoggedEvent::journal.last(), u"undo two");
    m_history->moveTo(100);
    QCOMPARE(m_history->position(), 2);
    m_history->moveTo(-100);
    QCOMPARE(m_history->position(), -1);
    QCOMPARE(disabled.size(), 3);
    QCOMPARE(enabled.size(), 3);
    QVERIFY(changed.isEmpty());
}

void HistoryTest::truncateRemovesTheRest()
{
    play(Three);
    QSignalSpy changed(m_history.get(), &History::doHistoryChanged);
    const QByteArray whole = log();
    m_history->truncate();
    QCOMPARE(changed.size(), 1);
    QCOMPARE(log(), whole);

    m_history->moveTo(0);
    LoggedEvent::journal.clear();
    m_history->truncate();
    QCOMPARE(LoggedEvent::journal, QStringList({u"delete three"_s, u"delete two"_s}));
    const int end = m_history->eventOffset(0) + m_history->eventAt(0)->size();
    QCOMPARE(log(), QByteArray(whole.first(end) + EndMarker));
    play({u"other"_s});
    QCOMPARE(LoggedEvent::readLog(log()), QStringList({u"one"_s, u"other"_s}));
}

void HistoryTest::eachCommandIsSynced()
{
    play(Three);
    QVERIFY(m_history->getStream()->needsSync());
    QTRY_VERIFY(!m_history->getStream()->needsSync());
    m_history->stepBack();
    m_history->truncate();
    QTRY_VERIFY(!m_history->getStream()->needsSync());
    QVERIFY(!m_windows->logBehind);
}

void HistoryTest::recentVisibleEvents_data()
{
    QTest::addColumn<QStringList>("events"); // a name that ends in "!" is visible
    addColumns<int, int, QStringList>({"position", "count", "recent"});

    const QString a = u"a!"_s;
    const QString b = u"b!"_s;
    const QString hidden = u"hidden"_s;
    const QString start = u"start!"_s;
    QTest::newRow("none") << QStringList() << -1 << 5 << QStringList();
    QTest::newRow("newest first") << QStringList({a, hidden, b}) << 2 << 5 << QStringList({b, a});
    QTest::newRow("from the position") << QStringList({a, b}) << 0 << 5 << QStringList({a});
    QTest::newRow("before the first") << QStringList({a, b}) << -1 << 5 << QStringList();
    QTest::newRow("as many as asked for") << QStringList({a, b}) << 1 << 1 << QStringList({b});
    QTest::newRow("no more than this encounter")
        << QStringList({a, start, hidden, b}) << 3 << 5 << QStringList({b});
    QTest::newRow("at the start itself")
        << QStringList({a, start}) << 1 << 5 << QStringList({start, a});
}

void HistoryTest::recentVisibleEvents()
{
    auto [events, position, count, recent] =
        fetch<QStringList, int, int, QStringList>({"events", "position", "count", "recent"});
    for (const QString &text : std::as_const(events)) {
        auto *event = new LoggedEvent(text, m_history->getStream());
        event->setVisible(text.endsWith(u'!'));
        m_history->doEvent(event);
    }
    m_history->moveTo(position);
    QStringList found;
    for (const Event *event : m_history->recentVisibleEvents(count))
        found << event->text();
    QCOMPARE(found, recent);
}

void HistoryTest::loadStopsAtAnUnknownEvent()
{
    play(Three);
    m_history->clear();
    const QByteArray damaged = log().chopped(EndMarker.size()) + UnknownEvent + EndMarker;
    writeLog(damaged);

    QVERIFY(!m_history->load());
    QCOMPARE(m_history->position(), 2);
    QCOMPARE(m_windows->hidden, 0);
    QCOMPARE(log(), damaged);
    QVERIFY(backups().isEmpty());

    // The next event stands behind the type that nobody knows, where the next load stops again.
    play({u"four"_s});
    QCOMPARE(m_history->eventOffset(3), int(damaged.size() - EndMarker.size()) - 3);
    QCOMPARE(backups().size(), 1);
    QCOMPARE(m_folder->read(u"History/"_s + backups().first()), damaged);
    m_history->clear();
    QVERIFY(!m_history->load());
    QCOMPARE(m_history->eventCount(), 3);
}

void HistoryTest::laterVersionIsRefused()
{
    m_history->getStream();
    m_history->clear();
    QByteArray later = log();
    later[3] = 2;
    writeLog(later);
    QVERIFY(m_history->load());
    QCOMPARE(m_windows->shown,
             QStringList({QStringLiteral("History File too New|The history file, <b>%1</b>, was "
                                         "created by Morvane version 1.5.09 Beta. You need to "
                                         "upgrade in order to read it.")
                              .arg(historyPath())}));
    QCOMPARE(m_history->getStream(true), nullptr);
    QCOMPARE(m_windows->shown.size(), 1);
    QCOMPARE(m_history->getStream(), nullptr);
    QCOMPARE(m_windows->shown.size(), 2);
    QCOMPARE(log(), later);
}

// What nobody may open or replace as a log.
void HistoryTest::logThatCannotBeOpened_data()
{
    QTest::addColumn<std::function<bool(const char *)>>("put");
    const auto addRow = [](const char *name, const std::function<bool(const char *)> &put) {
        QTest::newRow(name) << put;
    };
    addRow("folder", [](const char *path) { return mkdir(path, S_IRWXU) == 0; });
    addRow("pipe", [](const char *path) { return mkfifo(path, S_IRWXU) == 0; });
    addRow("device", [](const char *path) { return symlink("/dev/zero", path) == 0; });
    addRow("lost link", [](const char *path) { return symlink("nowhere", path) == 0; });
    addRow("socket", [](const char *path) {
        const int handle = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address {AF_UNIX, {}};
        qstrncpy(address.sun_path, path, sizeof address.sun_path);
        const bool bound =
            bind(handle, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
        close(handle);
        return bound;
    });
}

void HistoryTest::logThatCannotBeOpened()
{
    QFETCH(const std::function<bool(const char *)>, put);
    const QByteArray place = QFile::encodeName(historyPath());
    const char *path = place.constData();
    QVERIFY(put(path));
    const QString refusal =
        u"Cannot Create History File|Unable to create History file: %1"_s.arg(historyPath());
    QVERIFY(m_history->load());
    m_windows->shown.clear();
    QCOMPARE(m_history->getStream(), nullptr);
    QCOMPARE(m_windows->shown, QStringList({refusal}));
    QCOMPARE(m_history->getStream(true), nullptr);
    QCOMPARE(m_windows->shown.size(), 1);

    // The same in the place of the running log: it waits until the place is free.
    QCOMPARE(remove(path), 0);
    m_windows->shown.clear();
    play(Three);
    QCoreApplication::processEvents();
    QCOMPARE(remove(path), 0);
    QVERIFY(put(path));
    for (const QString &text : {u"four"_s, u"five"_s}) {
        play({text});
        QTRY_COMPARE(m_windows->shown.size(), 1);
        QVERIFY(m_windows->shown.first().startsWith(u"History File Changed|"_s));
        QVERIFY(m_windows->logBehind);
    }
    const QStringList fight = Three + QStringList({u"four"_s, u"five"_s});
    QVERIFY(!m_history->writeWaiting());
    QVERIFY(!m_history->backupLog());
    QVERIFY(m_windows->shown.takeLast().startsWith(u"Cannot Create History Backup|"_s));
    QVERIFY(m_history->saveLogAs(m_folder->file(u"elsewhere.log"_s)));
    QCOMPARE(LoggedEvent::readLog(m_folder->read(u"elsewhere.log"_s)), fight);

    QCOMPARE(remove(path), 0);
    QVERIFY(m_history->writeWaiting());
    QVERIFY(!m_windows->logBehind);
    QCOMPARE(m_windows->shown.size(), 1);
    QCOMPARE(LoggedEvent::readLog(log()), fight);
}

void HistoryTest::readOnlyTouchesNothing_data()
{
    addColumns<QByteArray, bool>({"tail", "known"});

    QTest::newRow("clean") << EndMarker << true;
    QTest::newRow("cut") << QByteArray(UnknownEvent.first(5)) << true;
    QTest::newRow("unknown event") << UnknownEvent << false;
}

void HistoryTest::readOnlyTouchesNothing()
{
    auto [tail, known] = fetch<QByteArray, bool>({"tail", "known"});
    play(Three);
    m_history->clear();
    const QByteArray before = log().chopped(EndMarker.size()) + tail;
    writeLog(before);

    const QScopedValueRollback readOnly(dataReadOnly, true);
    QCOMPARE(m_history->load(), known);
    QCOMPARE(m_history->eventCount(), 3);
    QCOMPARE(m_history->getStream(), nullptr);
    QCOMPARE(m_windows->readOnlyTold, 1);
    m_history->moveTo(0);
    m_history->truncate();
    QVERIFY(!m_history->backupLog());
    m_history->moveTo(2);
    QCOMPARE(m_history->eventCount(), 3);
    m_history->clear();
    QCOMPARE(log(), before);
    QVERIFY(backups().isEmpty());
    QVERIFY(m_windows->shown.isEmpty());
}

void HistoryTest::backupThatFailsLeavesEverything()
{
    play(Three);
    m_history->stepBack();
    m_folder->write(u"History"_s, u"a file in the way"_s);
    QVERIFY(!m_history->backupLog());
    QCOMPARE(m_windows->shown.takeFirst(),
             QStringLiteral("Cannot Create History Directory|Unable to create <b>History</b> "
                            "directory: %1%2History")
                 .arg(displayRoot, QDir::separator()));

    play({u"other"_s});
    QCOMPARE(LoggedEvent::readLog(log()), Three.first(2) + QStringList({u"other"_s}));

    // A log that was copied back gets another name the second time.
    QFile::remove(m_folder->file(u"History"_s));
    const QString name = u"history_%1"_s.arg(m_history->getStream()->created());
    QVERIFY(m_history->backupLog());
    QVERIFY(QFile::copy(m_folder->file(u"History/%1.log"_s.arg(name)), historyPath()));
    QVERIFY(m_history->load());
    QVERIFY(m_history->backupLog());
    QCOMPARE(backups(), QStringList({name + u".log"_s, name + u"_2.log"_s}));
    QCOMPARE(m_windows->shown, QStringList());
}

void HistoryTest::foreignChangesCostNothing_data()
{
    using Change = std::function<void(const TestDataFolder &)>;
    addColumns<Change, bool>({"change", "kept"});
    const auto file = [](auto work) {
        return [work](const TestDataFolder &) {
            QFile log(historyPath());
            QVERIFY(log.open(QIODevice::ReadWrite));
            work(log);
        };
    };
    const auto zero = [](QFile &log, qint64 from, qint64 count) {
        log.seek(from);
        log.write(QByteArray(count, '\0'));
    };
    QTest::newRow("deleted") << Change([](const TestDataFolder &) { QFile::remove(historyPath()); })
                             << false;
    QTest::newRow("replaced") << Change([](const TestDataFolder &folder) {
        folder.write(u"other.log"_s, u"restored by a sync"_s);
        QFile::remove(historyPath());
        QVERIFY(QFile::rename(folder.file(u"other.log"_s), historyPath()));
    }) << true;
    QTest::newRow("cut") << Change(file([](QFile &log) { log.resize(log.size() - 9); })) << true;
    QTest::newRow("longer") << Change(file([](QFile &log) { log.resize(log.size() + 9); })) << true;
    QTest::newRow("emptied") << Change(file([](QFile &log) { log.resize(0); })) << false;
    QTest::newRow("zeroed") << Change(file([zero](QFile &log) { zero(log, 0, log.size()); }))
                            << true;
    QTest::newRow("end zeroed") << Change(file([zero](QFile &log) {
        zero(log, log.size() - 20, 20);
    })) << true;
    QTest::newRow("start zeroed") << Change(file([zero](QFile &log) { zero(log, 0, 20); })) << true;
    QTest::newRow("folder removed") << Change([](const TestDataFolder &folder) {
        QVERIFY(QDir(folder.path()).removeRecursively());
    }) << false;
}

void HistoryTest::foreignChangesCostNothing()
{
    auto [change, kept] =
        fetch<std::function<void(const TestDataFolder &)>, bool>({"change", "kept"});
    const bool isFolderGone = qstrcmp(QTest::currentDataTag(), "folder removed") == 0;
    for (const bool beforeCommand : {true, false}) {
        m_history = std::make_unique<History>();
        QFile::remove(historyPath());
        QDir(m_folder->file(u"History"_s)).removeRecursively();
        m_windows->shown.clear();
        play(Three);
        if (beforeCommand)
            QCoreApplication::processEvents(); // the command is over
        change(*m_folder);
        if (beforeCommand)
            play({u"four"_s, u"five"_s});
        const QStringList texts =
            Three + (beforeCommand ? QStringList {u"four"_s, u"five"_s} : QStringList());
        // Once, however many commands follow.
        QTRY_COMPARE(m_windows->shown.size(), 1);
        QVERIFY(m_windows->shown.first().startsWith(u"History File Changed|"));
        QCOMPARE(m_windows->shown.first().contains(u"folder was gone"), isFolderGone);
        play({u"last"_s});
        QCoreApplication::processEvents();
        QCOMPARE(m_windows->shown.size(), 1);
        QCOMPARE(LoggedEvent::readLog(log()), texts + QStringList({u"last"_s}));
        QCOMPARE(backups().size(), kept ? 1 : 0);
        QVERIFY(!m_windows->logBehind);
    }
    QVERIFY(QDir(m_folder->file(u"Monsters"_s)).exists());
}

void HistoryTest::truncatingSparesAForeignLog()
{
    play(Three);
    QCoreApplication::processEvents(); // the command is over
    m_history->stepBack();
    const QByteArray foreign(log().size(), 'x');
    writeLog(foreign);
    m_history->truncate();
    QCOMPARE(backups().size(), 1);
    QCOMPARE(m_folder->read(u"History/"_s + backups().first()), foreign);
    QCOMPARE(LoggedEvent::readLog(log()), Three.first(2));
    QTRY_COMPARE(m_windows->shown.size(), 1);
}

void HistoryTest::damagedLogIsCopied_data()
{
    QTest::addColumn<int>("cut"); // bytes that the end of the log loses
    addColumns<QByteArray, bool>({"tail", "copied"});

    QTest::newRow("clean") << 0 << QByteArray() << false;
    QTest::newRow("marker lost") << 2 << QByteArray() << false;
    QTest::newRow("old tail") << 0 << QByteArray("old bytes") << false;
    QTest::newRow("cut in the last event") << 6 << QByteArray() << true;
    QTest::newRow("invalid length") << 2 << QByteArray("\x2c\x01\xff") << true;
    QTest::newRow("event without a type") << 2 << QByteArray("\x2c\x01\0\x20\x03\0\0\0", 8) << true;
}

void HistoryTest::damagedLogIsCopied()
{
    auto [cut, tail, copied] = fetch<int, QByteArray, bool>({"cut", "tail", "copied"});
    play(Three);
    m_history->clear();
    const QByteArray before = log().chopped(cut) + tail;
    QList<QByteArray> kept;
    // The same log is kept once; another copy within the same second takes another name.
    for (const char *version : {"Beta", "Beta", "Gama"}) {
        const QByteArray damaged = QByteArray(before).replace("Beta", version);
        writeLog(damaged);
        m_history->load();
        QCOMPARE(log(), damaged);
        play(Three);
        if (copied && !kept.contains(damaged))
            kept << damaged;
        QCOMPARE(backups().size(), kept.size());
        m_history->clear();
    }
    for (const QString &name : backups()) {
        QVERIFY(name.startsWith(u"history_damaged_20"_s));
        QVERIFY(kept.removeOne(m_folder->read(u"History/"_s + name)));
    }
    QVERIFY(m_windows->shown.isEmpty());
}

MORVANE_TEST_MAIN(QGuiApplication, HistoryTest)

#include "tst_history.moc"
