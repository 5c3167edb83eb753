// A disk in memory that remembers every write and can be full, for tests of what a kill or a
// failure leaves behind.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <functional>

struct DiskWrite {
    qint64 offset = 0;
    QByteArray bytes;
};

// As a file does it: a gap before the bytes is filled with zeros.
void placeBytes(QByteArray &image, qint64 offset, QByteArrayView bytes);

// Outlives the devices that are opened on it.
struct RecordedDisk {
    QByteArray bytes;
    QList<DiskWrite> writes;
    qint64 capacity = -1; // no byte goes at this offset or behind it; -1: there is always room
    // How many of the bytes of a write arrive before it fails; none set: all, and it doesn't.
    std::function<qint64(qint64 size)> tear;

    // What stood there if the process had died with `whole` writes done, and `part` bytes of the
    // one after them. The disk was empty at first.
    QByteArray afterKill(qsizetype whole, qsizetype part) const;
};

class RecordingDevice : public QIODevice {
public:
    // Opens itself.
    explicit RecordingDevice(RecordedDisk *disk);

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_disk->bytes.size(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    RecordedDisk *m_disk;
};
