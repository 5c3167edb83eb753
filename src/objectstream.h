// The tagged binary format of history.log: one position in the file for one position in the
// history.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QMap>
#include <QObject>
#include <functional>
#include <memory>

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
// any byte. What can't be written is kept and goes out ahead of the next record; the windows are
// told when the device falls behind and when it has caught up.
//
// The bytes of the device are held in memory as far as they have been read or written, so that
// searching and stepping cost no calls.
class ObjectStream : public QObject {
    Q_OBJECT

public:
    // Bytes of a log that can still be written to: offsets are int. Its size must be asked first.
    static constexpr qint64 LargestLog = 2'000'000'000;

    // Takes over the open device; the destructor closes and deletes it. On one that isn't writable
    // nothing is ever written, and what is written to the stream stays in memory.
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

    // At the end marker the position moves over its two bytes; `consumed` takes it back.
    StreamField readField();
    // Search forward for the tag, dropping what comes before. Without it the position stays in
    // front of the end marker, and the answer is 0, an empty text or false.
    int readInt(int tag);
    QString readString(int tag);
    bool readTo(int tag);
    // All fields up to and including the end tag, whatever their order.
    bool readRecord(QMap<int, StreamField> &record, int endTag);
    // 0 or an empty text for a tag that isn't in the record.
    static int fieldInt(const QMap<int, StreamField> &record, int tag);
    static QString fieldString(const QMap<int, StreamField> &record, int tag);
    // Look at the next field, which the next read gives once more. The position moves over it, but
    // never over the end marker. A seek or a write forgets it.
    StreamField peekField();
    bool nextIs(int tag);

    // All fields of those tags from here to the end of the data. The position stays.
    QList<StreamField> fieldsAhead(std::initializer_list<int> tags);

    // Whether so many bytes of fields lie ahead, before the next event begins.
    bool recordHolds(qint64 bytes);

    // Clamped to 0 and the end of the data.
    void seek(qint64 offset);
    void skip(int delta) { seek(qint64(m_position) + delta); }
    int position() const { return m_position; }
    // The end of the data: once something was written the offset of the end marker, before that
    // the size of the file.
    int size() const { return m_size; }
    // Writes what waits in memory.
    void flush();
    // Has the disk keep everything written so far; once after each command.
    void sync();
    bool needsSync() const { return m_unsyncedFrom >= 0; }
    // Bytes wait in memory because the device would not take them.
    bool isBehind() const { return m_behind; }

    // Reads the header, or writes one to an empty file. A damaged header counts as an empty file.
    // False for a log of another major version, with a message unless `silent`.
    bool readHeader(bool silent);
    // 0 and empty where a log that can't be written has no header or a damaged one.
    int majorVersion() const { return m_major; }
    int minorVersion() const { return m_minor; }
    const QString &version() const { return m_version; }
    const QString &created() const { return m_created; }

    // The bytes that the device holds for certain, from its start, to tell whether somebody changed
    // the file. Good until the next read or write.
    QByteArrayView written() const;
    // The size in which the last write left the device.
    qint64 writtenSize() const { return m_deviceSize; }
    // Grows with each write to the device.
    int writeCount() const { return m_writeCount; }
    // Of the file; -1 if the device is none.
    int handle() const { return m_handle; }
    // All that the log has to hold, its end marker included. Reads what wasn't read so far.
    QByteArray wholeLog();
    // Writes nothing more to the device, which isn't the log any more: the stream is behind until
    // it gets another device.
    void detach();
    bool isDetached() const { return m_detached; }
    // Takes over an open device that holds wholeLog().
    void replaceDevice(QIODevice *device);

    // Bytes of the log, without keeping them; fewer at the end of the file. For a log to which
    // nothing was written yet.
    QByteArray bytesAt(qint64 offset, qint64 count);
    qint64 fileSize() const { return m_device->size(); }

    // Called before the first write, if that destroys bytes of a log that didn't read clean to its
    // end. Set by the history, which keeps a copy of the file. While it answers false, nothing is
    // written.
    using DamageGuard = std::function<bool()>;
    void setDamageGuard(DamageGuard guard) { m_guard = std::move(guard); }
    // The reader met something that it could not make sense of.
    void markDamaged() { m_damaged = true; }
    bool isDamaged() const { return m_damaged; }
    // What lies behind the data is damage of which there is a copy: the first write cuts it off.
    void cutTailOnWrite() { m_damaged = m_cutsTail = true; }

    // For debugging: the name of a tag, or its number. Nothing in the program calls it.
    static QString tagName(int tag);

private:
    struct FieldView {
        int consumed = 0;
        int tag = 0;
        QByteArrayView value; // good until the next read or write
    };

    bool have(qint64 count);
    void load(qint64 end);
    FieldView takeField();
    FieldView parseField();
    FieldView search(int tag);
    bool endStandsAt(int offset);
    void cutHere();
    void cutFile();
    void writeOut();
    bool writeDirty();
    bool writeFresh();
    bool put(qint64 offset, QByteArrayView bytes);
    void setBehind(bool behind);
    void tellBehind() const;
    QString fileName() const;
    bool isHeaderValid() const;
    void writeHeader();

    std::unique_ptr<QIODevice> m_device;
    int m_handle; // of the file; -1 if the device is none
    QByteArray m_data; // from the start of the file
    DamageGuard m_guard;
    QString m_created;
    QString m_version;
    int m_major = 0;
    int m_minor = 0;
    int m_size = 0;
    int m_position = 0;
    int m_mark = 0;
    StreamField m_peeked; // tag 0: none
    int m_dirtyFrom = -1; // from here on the device lacks what m_data holds; -1: it lacks nothing
    int m_unsyncedFrom = -1;
    bool m_endAtDirty = false; // the data on the device ends at m_dirtyFrom, as far as is known
    bool m_inRecord = false;
    bool m_metEnd = false; // a reader came to the end marker
    bool m_damaged = false;
    bool m_cutsTail = false;
    bool m_detached = false;
    int m_writeCount = 0;
    qint64 m_deviceSize; // as far as was written or found
    bool m_behind = false;
    bool m_toldBehind = false;
    TrackerMember m_tracker {__LINE__, "objectstream"};
};
