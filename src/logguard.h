// Keeps the file of the open log what the program wrote, whoever else changes or removes it.
#pragma once

#include <QString>
#include <ctime>
#include <sys/types.h>

class ObjectStream;

// What the program holds in memory is the fight. A file at the log's place that isn't what was
// written belongs to somebody else: it is kept in the "History" folder, and the log is written
// whole from memory. A data folder that was removed is made anew.
class LogGuard {
public:
    // Tells one state of a file from another.
    struct Stamp {
        ino_t file = 0;
        timespec modified = {};
        timespec changed = {};
        bool operator==(const Stamp &other) const;
    };

    // `root` is the data folder of the log, and the stream's device an open file in it.
    LogGuard(ObjectStream &stream, const QString &root);

    // Compares the file with what was written, and puts the log back in its place where they
    // differ. While that can't be done the stream is behind; the next check tries again. True when
    // it was done.
    bool check();
    // Rich text that tells the user of what check() met, once for each incident; empty for nothing.
    QString takeMessage();

private:
    bool isUntouched();
    bool holds(qint64 from, qint64 end) const;
    bool putBack(QString &copy);
    bool makeFolder();

    ObjectStream &m_stream;
    QString m_root;
    QString m_path;
    QString m_message;
    Stamp m_stamp; // of the file when it was last found as it was written
    dev_t m_disk = 0; // the one that the folder lies on
    int m_writes = 0; // writeCount() of the stream at that time
    QString m_copy; // path of the copy of what stands in the log's place while it is away
    bool m_isFolderNew = false; // was made again, and the user wasn't told yet
    bool m_isAway = false; // the log isn't in its place, and the user was told
};
