// What is lost in a damaged log, and what can still be read behind the damage.
#pragma once

#include <QByteArray>
#include <QList>
#include <functional>

// Bytes of the log from an offset; fewer where it ends.
using LogSource = std::function<QByteArray(qint64 offset, qint64 count)>;

// What one event of the fight took in the log.
struct LogSpan {
    qint64 offset = 0;
    qint64 size = 0;
};

struct LogDamage {
    qint64 fileSize = 0;
    qint64 end = 0; // of the damage and of what can't be used behind it
    qint64 lostBytes = 0; // in no event of the fight that is whole; 0: no damage
    int lostEvents = 0; // whole records among them
    QString copy; // of the file; empty where there is none

    explicit operator bool() const { return lostBytes > 0; }
};

// Compares the events of the fight with the records that the file holds. `spans` are those events
// in order and without a gap, and `stop` is where reading ended behind the last of them.
//
// Not damage: what lies behind an end marker, where stepping back and a new command leave old
// records; a field cut short at the end of the file; a write that was killed. A hole of fewer
// zeroes than LeastHole can't be told from such an end.
LogDamage findLogDamage(LogSource source, qint64 fileSize, const QList<LogSpan> &spans,
                        qint64 stop);

// So many zeroes in a row are no end marker with old bytes behind it.
constexpr int LeastHole = 16;
