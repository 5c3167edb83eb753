// The log of the fight: the one place through which creatures and the encounter change.
#pragma once

#include <QIODevice>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>

#include "editedfiles.h"
#include "logdamage.h"
#include "memorytracker.h"

class Event;
class LogGuard;
class LogLock;
class ObjectStream;

// Keeps the events in memory, their records in history.log and the state of the creatures in step
// through one number, the position. Owns the events and the stream.
class History : public QObject {
    Q_OBJECT

public:
    explicit History(QObject *parent = nullptr);
    ~History() override;

    // The open log, opened if need be. Null when it can't be opened, is too new or is only looked
    // at (mayWrite()); the user has then been told, unless `silent`. Ask this before making an
    // event, and make none on null.
    ObjectStream *getStream(bool silent = false);
    // The way in for every new event, which becomes the history's.
    void doEvent(Event *event, bool silent = false);
    void stepBack();
    void stepForward(bool silent = false);
    // Steps until position() is `index`, or as near as the events allow. doHistoryChanged() isn't
    // emitted.
    void moveTo(int index);
    bool canStepBack() const { return m_position >= 0; }
    bool canStepForward() const { return m_position + 1 < m_events.size(); }
    // Removes all events behind the position, also from the file.
    void truncate();
    // Empties the history in memory and closes the file; creatures keep what they have.
    void clear();
    // Moves the log into the "History" folder. False, with a message, when that fails; everything
    // is then as it was.
    bool backupLog();
    // Reads and applies the log of the data folder. False if an unknown event stopped it. A record
    // without its end at the end of the data is no event.
    // `tell` hears now and then how many bytes of how many are behind, and may run the event loop.
    using LoadProgress = std::function<void(qint64 done, qint64 total)>;
    bool load(const LoadProgress &tell = {});
    // What the last load() could not use, with a copy of the file in the "History" folder.
    const LogDamage &damage() const { return m_damage; }
    // Rich text that tells the user of it, empty without damage.
    QString damageText() const;

    // Writes what the disk didn't take so far. False while some of it still waits in memory.
    bool writeWaiting();
    // Writes the log as it should be to another file. False when that fails, or no log is open.
    bool saveLogAs(const QString &path);

    int eventCount() const { return int(m_events.size()); }
    // Null out of range.
    Event *eventAt(int index) const;
    // Empty out of range.
    QString eventText(int index) const;
    // Where the event's record starts in the file; -1 out of range.
    int eventOffset(int index) const;
    // Index of the last event that is applied; -1 for none.
    int position() const { return m_position; }
    // The characters whose edited files the next command logs, in the encounter or not.
    QList<Creature *> editedCharacters() const { return m_editedFiles.characters(); }
    // The latest visible events of the running encounter, newest first.
    QList<Event *> recentVisibleEvents(int maxCount) const;

    // False with `dataReadOnly`, of which the user is then told in the status bar: the log is read,
    // shown and stepped through, and no event is made.
    bool mayWrite() const;
    // The right to write to the log of `dataRoot`, given back when the next one comes or the
    // history goes. Null, as in tools and tests, stands for a folder that nobody else writes to.
    // With a lock that isn't taken yet, the log is opened for writing only once it can be. Before
    // the log is opened.
    void setLock(std::unique_ptr<LogLock> lock);
    LogLock *lock() const { return m_lock.get(); }
    // For tests: another device in place of the file, open or null. The stream deletes it.
    using DeviceFactory = std::function<QIODevice *(const QString &path)>;
    void setDeviceFactory(DeviceFactory factory) { m_makeDevice = std::move(factory); }

Q_SIGNALS:
    void doHistoryChanged();
    void doDisableWidgetDisplay();
    void doEnableWidgetDisplay();

private:
    struct Entry {
        Event *event;
        int offset;
    };

    ObjectStream *openStream(bool silent = false);
    std::unique_ptr<QIODevice> openLog() const;
    void closeStream();
    bool writeRest();
    void checkFile();
    void tellOfFile();
    void applyNext();
    void takeBackLast();
    void removeBehindPosition();
    bool replay(const LoadProgress &tell);
    void findDamage(qint64 firstEvent);
    void syncSoon();
    void tellChanged();

    QList<Entry> m_events;
    int m_position = -1;
    std::unique_ptr<LogLock> m_lock; // outlives the stream: given back after the last write
    std::unique_ptr<ObjectStream> m_stream;
    DeviceFactory m_makeDevice;
    LogDamage m_damage;
    EditedFiles m_editedFiles; // until the next event
    QTimer m_syncTimer;
    std::unique_ptr<LogGuard> m_logGuard; // null without a file to guard
    QStringList m_untold; // what the user has still to be told of the file
    bool m_isCheckDue = false; // the next command looks first whether the file is still the log
    TrackerMember m_tracker {__LINE__, "history"};
};

// The one of the running program. Null before it is made and after shut-down.
extern History *theHistory;
