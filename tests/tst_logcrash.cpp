// What the log holds when the program dies at any byte, and when the disk is full at any byte.

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <csignal>
#include <sys/resource.h>

#include "creaturelist.h"
#include "effectevents.h"
#include "encounter.h"
#include "history.h"
#include "loggedevent.h"
#include "objectstream.h"
#include "paths.h"
#include "recordingdevice.h"
#include "rosterevents.h"
#include "scriptedwindows.h"
#include "testdata.h"
#include "testfight.h"
#include "testhome.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

// A history on a disk that remembers, and what the log ought to hold after each command.
class Fight {
public:
    // The log on the disk as it ought to read, and how many writes that took.
    struct State {
        QStringList log;
        qsizetype writes;
        bool overwrites; // the command that led here cut off old events
    };

    Fight();

    void command(const QString &text);
    void stepBack(int count);
    void truncate();
    History &history() { return m_history; }
    ObjectStream *stream() { return m_history.getStream(); }
    const QStringList &events() const { return m_events; }

    // Hundred events of all lengths, with stepping back and going on in between.
    void playHundredEvents();

    RecordedDisk disk;
    QList<State> states;

private:
    History m_history;
    QStringList m_events;
};

Fight::Fight()
{
    m_history.setDeviceFactory([this](const QString &) { return new RecordingDevice(&disk); });
}

void Fight::command(const QString &text)
{
    const bool overwrites = m_history.canStepForward();
    m_events.resize(m_history.position() + 1);
    m_events << text;
    m_history.doEvent(new LoggedEvent(text, stream()));
    states << State {m_events, disk.writes.size(), overwrites};
}

void Fight::stepBack(int count)
{
    for (int i = 0; i < count; ++i)
        m_history.stepBack();
}

void Fight::truncate()
{
    m_events.resize(m_history.position() + 1);
    m_history.truncate();
    states << State {m_events, disk.writes.size(), true};
}

void Fight::playHundredEvents()
{
    for (int i = 0; i < 100; ++i) {
        // The lengths cross the border between length fields of one and three bytes.
        command(QString::number(i) + u':' + QString(i % 10 == 7 ? 245 + i / 10 : i % 9, u'x'));
        if (i % 12 == 5)
            stepBack(1 + i % 7);
        if (i % 12 == 8) {
            stepBack(4);
            m_history.stepForward();
        }
    }
}

QStringList readEvents(const QByteArray &log)
{
    return LoggedEvent::readLog(log);
}

// The records of a log as they stand in it.
QStringList readRecords(const QByteArray &log)
{
    auto *buffer = new QBuffer;
    buffer->setData(log);
    buffer->open(QIODevice::ReadOnly);
    ObjectStream stream(buffer);
    QStringList records;
    if (!stream.readTo(ID_HEADER_END))
        return records;
    int start = stream.position();
    for (bool more = true; more;) {
        const StreamField field = stream.readField();
        more = field.tag != 0;
        if (more && field.tag != ID_EVENT_TYPE)
            continue;
        const int end = stream.position() - field.consumed;
        if (end > start)
            records << QString::fromLatin1(log.mid(start, end - start).toHex());
        start = end;
    }
    return records;
}

// Before the header stands there are no events, and from then on the command that was being written
// is either there or not. One that takes the place of older events may leave neither. Empty when
// that holds for a kill at each byte of each write.
QString firstBrokenKill(const RecordedDisk &disk, const QList<Fight::State> &states,
                        QStringList (*readLog)(const QByteArray &))
{
    QStringList before;
    qsizetype write = 0;
    for (const Fight::State &state : states) {
        const QStringList kept = state.log.first(state.log.size() - 1);
        for (; write < state.writes; ++write) {
            const qsizetype length = disk.writes.at(write).bytes.size();
            for (qsizetype part = 0; part < length; ++part) {
                const QStringList left = readLog(disk.afterKill(write, part));
                if (left == before || left == state.log || (state.overwrites && left == kept))
                    continue;
                return QStringLiteral("after %1 bytes of write %2 (%3): %4")
                    .arg(part)
                    .arg(write)
                    .arg(state.log.last(), left.join(u' '));
            }
        }
        if (readLog(disk.afterKill(write, 0)) != state.log)
            return QStringLiteral("after write %1").arg(write);
        before = state.log;
    }
    return QString();
}

bool isPrefix(const QStringList &part, const QStringList &whole)
{
    return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

bool isPrefixOfSomeState(const QStringList &part, const QList<Fight::State> &states)
{
    return std::any_of(states.rbegin(), states.rend(),
                       [&part](const Fight::State &state) { return isPrefix(part, state.log); });
}

// A disk that is full from there on.
void setLargestFile(rlim_t size)
{
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = size;
    setrlimit(RLIMIT_FSIZE, &limit);
}

// Deletes, replaces, cuts, lengthens, empties or overwrites the log. False if nothing is different
// then.
bool changeFile(const TestDataFolder &folder, QRandomGenerator &random, QList<QByteArray> &backups)
{
    const auto log = [&folder] { return folder.read(QStringLiteral("history.log")); };
    const auto write = [](const QString &path, const QByteArray &bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.resize(bytes.size());
        file.write(bytes);
    };
    const QByteArray before = log();
    const qsizetype place = random.bounded(int(before.size()));
    QByteArray bytes = before;
    switch (random.bounded(9)) {
    case 0:
        return QFile::remove(historyPath());
    case 1:
        return QDir(folder.path()).removeRecursively();
    case 2:
        return QFile::rename(historyPath(), folder.file(QStringLiteral("moved.log")));
    case 3: // a backup is restored, or a sync brings another file
        bytes = random.bounded(2) ? backups.at(random.bounded(int(backups.size())))
                                  : QByteArray(place, 'x');
        write(folder.file(QStringLiteral("other.log")), bytes);
        return rename(qPrintable(folder.file(QStringLiteral("other.log"))),
                      qPrintable(historyPath()))
            == 0;
    case 4:
        bytes = backups.at(random.bounded(int(backups.size())));
        break;
    case 5:
        bytes.truncate(place);
        break;
    case 6:
        bytes.append(QByteArray(1 + place, random.bounded(2) ? 'x' : '\0'));
        break;
    case 7:
        bytes.fill('\0');
        break;
    default:
        bytes.replace(place / 2, place - place / 2, QByteArray(place - place / 2, '\0'));
    }
    backups << before;
    write(historyPath(), bytes);
    return bytes != before;
}

} // namespace

class LogCrashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void killAtAnyByteLeavesAWholePrefix();
    void killAtAnyByteOfARealFight();
    void fullDiskStopsNoFight();
    void diskThatTearsWritesAtRandom();
    void fileThatOthersChangeAtRandom();
    void foreignFileThatHasNoRoomForACopy();
    void whatWaitsIsWrittenAtTheEnd();
    void stepsBackWhileTheDiskIsFull();
};

void LogCrashTest::killAtAnyByteLeavesAWholePrefix()
{
    Fight fight;
    fight.playHundredEvents();
    QCOMPARE(LoggedEvent::readLog(fight.disk.bytes), fight.events());

    QCOMPARE(firstBrokenKill(fight.disk, fight.states, readEvents), QString());
}

// The same with a fight's own events, record by record as bytes.
void LogCrashTest::killAtAnyByteOfARealFight()
{
    TestFight fight;
    RecordedDisk disk;
    theHistory->setDeviceFactory([&disk](const QString &) { return new RecordingDevice(&disk); });
    QList<Fight::State> states;
    const auto play = [&](auto makeEvent) {
        const bool overwrites = theHistory->canStepForward();
        theHistory->doEvent(makeEvent(theHistory->getStream()));
        states << Fight::State {readRecords(disk.bytes), disk.writes.size(), overwrites};
        QCOMPARE(states.last().log.size(), theHistory->eventCount());
    };
    const QList<Creature *> party = TestFight::creatures(
        {QStringLiteral("Aria"), QStringLiteral("Borin"), QStringLiteral("Cleo")});
    Creature *rat = TestFight::creature(QStringLiteral("Rat (1)"));
    play([&](ObjectStream *stream) {
        return new SetPartyEvent(CreatureList(party), false, {}, stream);
    });
    play([&](ObjectStream *stream) {
        return new AddMonsterEvent(CreatureList(QList<Creature *> {rat}), false, {}, stream);
    });
    play([&](ObjectStream *stream) {
        return new StartEncounterEvent({{QStringLiteral("Aria"), 20, 1}},
                                       {{QStringLiteral("Rat"), 12, 2}}, stream);
    });
    for (int turn = 0; turn < 25; ++turn) {
        Creature *hero = party.at(turn % party.size());
        play([&](ObjectStream *stream) { return new NextTurnEvent(stream, false); });
        play([&](ObjectStream *stream) { return new DamageEvent(rat, hero, turn, stream); });
        play([&](ObjectStream *stream) { return new HealEvent(hero, party, 1, turn, stream); });
        play([&](ObjectStream *stream) { return new TotalDefenseEvent(hero, stream); });
        for (int back = 0; back < turn % 4; ++back)
            theHistory->stepBack();
    }
    QVERIFY(states.size() > 100);
    QCOMPARE(firstBrokenKill(disk, states, readRecords), QString());
}

void LogCrashTest::fullDiskStopsNoFight()
{
    qint64 size = 0;
    {
        Fight fight;
        fight.playHundredEvents();
        size = fight.disk.bytes.size();
    }
    for (qint64 capacity = 0; capacity < size; capacity += 1 + capacity / 60) {
        ScriptedWindows windows;
        Fight fight;
        fight.disk.capacity = capacity;
        fight.playHundredEvents();
        QCOMPARE(fight.history().position(), int(fight.events().size()) - 1);
        QVERIFY(windows.logBehind);
        QVERIFY(fight.stream()->isBehind());
        QTRY_COMPARE(windows.shown.size(), 1);
        // Whatever the disk took reads as a part of the fight, at each moment.
        for (qsizetype whole = 0; whole <= fight.disk.writes.size(); ++whole)
            QVERIFY(isPrefixOfSomeState(LoggedEvent::readLog(fight.disk.afterKill(whole, 0)),
                                        fight.states));

        fight.disk.capacity = -1;
        const qsizetype firstRetry = fight.disk.writes.size();
        fight.command(QStringLiteral("with room again"));
        QVERIFY(!windows.logBehind);
        QCOMPARE(windows.shown.size(), 1);
        QCOMPARE(LoggedEvent::readLog(fight.disk.bytes), fight.events());

        // Many records go out in one batch then: as safe against a kill as one alone.
        for (qsizetype write = firstRetry; write < fight.disk.writes.size(); ++write) {
            const qsizetype length = fight.disk.writes.at(write).bytes.size();
            for (qsizetype part = 0; part < length; part += 1 + part / 16)
                QVERIFY(isPrefixOfSomeState(LoggedEvent::readLog(fight.disk.afterKill(write, part)),
                                            fight.states));
        }
    }
}

// A quarter of all writes ends early. Whatever moment the program is killed at, the disk holds a
// part of the fight, and all of it whenever the program thinks so.
void LogCrashTest::diskThatTearsWritesAtRandom()
{
    QRandomGenerator random(RandomTest::seed());
    const auto failed = qScopeGuard([] {
        if (QTest::currentTestFailed())
            qInfo("--seed %u", RandomTest::seed());
    });
    ScriptedWindows windows;
    Fight fight;
    fight.disk.tear = [&random](qint64 size) {
        return random.bounded(4) > 0 ? size : random.bounded(int(size));
    };
    QByteArray image;
    qsizetype seen = 0;
    for (int i = 0; i < RandomTest::count(300); ++i) {
        fight.command(QString::number(i) + u':' + QString(random.bounded(400), u'x'));
        if (random.bounded(5) == 0)
            fight.stepBack(random.bounded(6));
        if (random.bounded(4) == 0)
            fight.truncate();
        for (; seen < fight.disk.writes.size(); ++seen) {
            const DiskWrite &write = fight.disk.writes.at(seen);
            QByteArray killed = image;
            placeBytes(killed, write.offset,
                       write.bytes.first(random.bounded(int(write.bytes.size()) + 1)));
            placeBytes(image, write.offset, write.bytes);
            if (random.bounded(3) == 0)
                QVERIFY(isPrefixOfSomeState(LoggedEvent::readLog(killed), fight.states));
        }
        bool clean = true;
        if (!fight.stream()->isBehind())
            QCOMPARE(LoggedEvent::readLog(fight.disk.bytes, &clean), fight.events());
        QVERIFY(clean);
    }
    QTRY_COMPARE(windows.shown.size(), 1);
    fight.disk.tear = nullptr;
    fight.history().clear();
    QCOMPARE(LoggedEvent::readLog(fight.disk.bytes), fight.events());
}

void LogCrashTest::fileThatOthersChangeAtRandom()
{
    QRandomGenerator random(RandomTest::seed());
    std::signal(SIGXFSZ, SIG_IGN);
    const auto failed = qScopeGuard([] {
        setLargestFile(RLIM_INFINITY);
        if (QTest::currentTestFailed())
            qInfo("--seed %u", RandomTest::seed());
    });
    const TestDataFolder folder;
    ScriptedWindows windows;
    History history;
    QStringList events;
    const auto command = [&] {
        events.resize(history.position() + 1);
        events << QString::number(events.size()) + u':' + QString(random.bounded(3000), u'x');
        history.doEvent(new LoggedEvent(events.last(), history.getStream()));
    };
    const auto log = [&folder] { return folder.read(QStringLiteral("history.log")); };
    QList<QByteArray> backups;
    for (int i = 0; i < RandomTest::count(200); ++i) {
        command();
        QCoreApplication::processEvents();
        backups << log();
        if (random.bounded(4) == 0)
            history.stepBack();
        if (random.bounded(3) > 0)
            continue;
        history.getStream(); // a command that comes to nothing
        const bool isFull = random.bounded(3) == 0;
        if (isFull) {
            setLargestFile(log().size() + random.bounded(2000));
            command();
        }
        QCoreApplication::processEvents();
        const bool isChanged = changeFile(folder, random, backups);
        const QByteArray foreign = log();
        command();
        command();
        if (isFull)
            setLargestFile(RLIM_INFINITY);
        QVERIFY(history.writeWaiting());
        QCOMPARE(LoggedEvent::readLog(log()), events);
        const auto told = windows.shown.filter(QStringLiteral("History File Changed")).size();
        windows.shown.clear();
        // What the full disk took of a record that isn't whole is nobody's.
        QVERIFY(told == (isChanged ? 1 : 0) || (isFull && told == 0));
        if (told > 0 && !foreign.isEmpty())
            QVERIFY(folder.files().values().contains(foreign));
    }
}

void LogCrashTest::foreignFileThatHasNoRoomForACopy()
{
    std::signal(SIGXFSZ, SIG_IGN);
    const TestDataFolder folder;
    ScriptedWindows windows;
    History history;
    history.doEvent(new LoggedEvent(QStringLiteral("one"), history.getStream()));
    QCoreApplication::processEvents();
    const QByteArray foreign(100'000, 'x');
    QFile file(historyPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(foreign), foreign.size());
    file.close();
    setLargestFile(10'000);
    history.doEvent(new LoggedEvent(QStringLiteral("two"), history.getStream()));
    const bool isWritten = history.writeWaiting();
    setLargestFile(RLIM_INFINITY);
    QVERIFY(isWritten);
    QVERIFY(folder.files().values().contains(foreign));
    QCOMPARE(LoggedEvent::readLog(folder.read(QStringLiteral("history.log"))).size(), 2);
}

void LogCrashTest::whatWaitsIsWrittenAtTheEnd()
{
    ScriptedWindows windows;
    Fight fight;
    fight.command(QStringLiteral("on disk"));
    fight.disk.capacity = fight.disk.bytes.size();
    fight.command(QStringLiteral("in memory"));
    fight.command(QStringLiteral("as well"));
    QCOMPARE(LoggedEvent::readLog(fight.disk.bytes), fight.events().first(1));

    fight.disk.capacity = -1;
    fight.history().clear();
    QCOMPARE(LoggedEvent::readLog(fight.disk.bytes), fight.events());
    QVERIFY(!windows.logBehind);
}

void LogCrashTest::stepsBackWhileTheDiskIsFull()
{
    for (int steps = 1; steps <= 4; ++steps) {
        ScriptedWindows windows;
        Fight fight;
        fight.command(QStringLiteral("one"));
        fight.command(QStringLiteral("two"));
        fight.disk.capacity = fight.disk.bytes.size();
        fight.command(QStringLiteral("three"));
        fight.command(QStringLiteral("four"));
        fight.stepBack(steps);
        fight.command(QStringLiteral("a longer five that needs more room than the old events had"));
        QVERIFY(windows.logBehind);
        QVERIFY(isPrefixOfSomeState(LoggedEvent::readLog(fight.disk.bytes), fight.states));

        fight.disk.capacity = -1;
        fight.stream()->flush();
        QVERIFY(!windows.logBehind);
        QCOMPARE(LoggedEvent::readLog(fight.disk.bytes), fight.events());
    }
}

MORVANE_TEST_MAIN(QGuiApplication, LogCrashTest)

#include "tst_logcrash.moc"
