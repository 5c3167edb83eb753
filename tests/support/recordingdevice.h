// A disk in memory that remembers every write and can be full, for tests of what a kill or a
// failure leaves behind.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>

struct DiskWrite {
    qint64 offset = 0;
    QByteArray bytes;
};

// Outlives the devices that are opened on it.
struct RecordedDisk {
    QByteArray bytes;
    QList<DiskWrite> writes;
    qint64 capacity = -1; // no byte goes at this offset or behind it; -1: there is always room

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
