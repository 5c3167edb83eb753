// One program at a time writes to a data folder: the lock beside its log.
#pragma once

#include <QLockFile>
#include <QString>
#include <memory>

// A file "history.log.lock" that names its holder: the program, its process and its host. One that
// a dead program of this host has left is taken over at once; age alone never breaks a lock.
class LogLock {
    Q_DISABLE_COPY_MOVE(LogLock)

public:
    enum class Result {
        Taken,
        HeldElsewhere,
        Impossible // the folder can't be written, or something that is no lock is in the way
    };

    // Takes nothing yet. The folder need not be there.
    explicit LogLock(const QString &folder);
    // Gives it back.
    ~LogLock();

    // Waits a moment, as another program may hold it just to see whether it is free. Does nothing
    // when it is taken already.
    Result take();
    void giveBack();
    bool isTaken() const { return m_file->isLocked(); }
    // Makes the file of the taken lock again where it went with its folder and the folder was made
    // anew.
    void renew();
    // Whether somebody else has it. A lock that isn't taken is tried for that, and given back at
    // once.
    bool isHeldElsewhere();
    // Whether that is the folder of this lock, on whatever road it is reached.
    bool isOf(const QString &folder) const;

    // Of the last attempt: who holds it, or why there is none. Plain text, the middle of a sentence
    // ("in use by ..."); empty when it was taken.
    const QString &obstacle() const { return m_obstacle; }
    // Nobody can tell from here whether the holder still runs: it is on another host, or doesn't
    // say who it is.
    bool isHolderOutOfSight() const { return m_holderOutOfSight; }
    QString fileName() const { return m_file->fileName(); }

private:
    // What stands in the lock of another.
    struct Content {
        enum Kind { Holder, Blank, Unreadable, Foreign } kind = Foreign;
        qint64 process = 0;
        QString host;
        QString program;

        bool isOfThisHost() const;
    };

    bool isStillOurs() const;
    void abandon();
    Result attempt(int patience);
    bool removeLeftOver();
    Content read() const;
    Result describeHolder();
    Result isInTheWay(const QString &path);
    // The toolkit's own lock for the removal of one that was left.
    QString removerName() const;

    QString m_folder; // without links, if it was there
    std::unique_ptr<QLockFile> m_file;
    QString m_obstacle;
    bool m_holderOutOfSight = false;
};
