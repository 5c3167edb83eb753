// The tagged binary format of history.log: one position in the file for one position in the
// history.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QMap>
#include <QObject>
#include <functional>

#include "memorytracker.h"
#include "streamtags.h"

struct StreamField {
    int consumed = 0; // bytes that it took in the file
    int tag = 0; // 0: the end of the data
    QByteArray value;
};

// A field is a 16-bit tag, a length of 1, 3 or 5 bytes and the value, little-endian; tag 0 alone
// ends the data. Fields between markRecord() and finishRecord() are one record: it is assembled in
// memory and goes to the device in an order that leaves a whole prefix of the log after a kill at
// any byte. What can't be written is kept and goes out ahead of the next record.
class ObjectStream : public QObject {
    Q_OBJECT

public:
    // Takes over the open device; the destructor closes and deletes it.
    explicit ObjectStream(QIODevice *device);
    ~ObjectStream() override;

    void writeInt(int tag, int value);
    void writeString(int tag, const QString &text);
    void writeEnd(int tag);
    void writeField(int tag, QByteArrayView value);
    // Remembers the position as the start of a record to write or to read.
    void markRecord();
    // Back to the mark; the number of bytes between the mark and the old position.
    int finishRecord();
    // Cuts the data at the position.
    void truncate();

    StreamField readField();
    // Search forward for the tag, dropping what comes before. Without it the position stays in
    // front of the end marker, and the answer is 0, an empty text or false.
    int readInt(int tag);
    QString readString(int tag);
    bool readTo(int tag);
    // All fields up to and including the end tag, whatever their order.
    bool readRecord(QMap<int, StreamField> &record, int endTag);
    static int fieldInt(const QMap<int, StreamField> &record, int tag);
    static QString fieldString(const QMap<int, StreamField> &record, int tag);
    // Look at the next field without losing it. At the end marker nothing is peeked and the
    // position stays in front of it.
    StreamField peekField();
    bool nextIs(int tag);

    // Clamped to 0 and the end of the data.
    void seek(int offset);
    void skip(int delta) { seek(m_position + delta); }
    int position() const { return m_position; }
    int size() const { return m_size; }
    void flush();
    // Everything written so far to the disk; once after each command.
    void sync();
    // Bytes wait in memory because the device would not take them.
    bool isBehind() const;

    // Reads the header, or writes one to an empty file. A damaged header counts as an empty file.
    // False for a log of a later major version, with a message unless `silent`.
    bool readHeader(bool silent);
    int majorVersion() const { return m_major; }
    int minorVersion() const { return m_minor; }
    const QString &version() const { return m_version; }
    const QString &created() const { return m_created; }

    // Called before the first write that destroys bytes of a log that didn't read clean to its end.
    // Set by the history, which keeps a copy of the file.
    using DamageGuard = std::function<void()>;
    void setDamageGuard(DamageGuard guard) { m_guard = std::move(guard); }
    // The reader met something that it could not make sense of.
    void markDamaged();

    // For debugging: the name of a tag, or its number.
    static QString tagName(int tag);

private:
    QIODevice *m_device = nullptr;
    DamageGuard m_guard;
    QString m_created;
    QString m_version;
    int m_major = 0;
    int m_minor = 0;
    int m_size = 0;
    int m_position = 0;
    int m_mark = 0;
    StreamField m_peek;
    TrackerMember m_tracker {__LINE__, "objectstream"};
};
