#include "recordingdevice.h"

#include <cstring>

void placeBytes(QByteArray &image, qint64 offset, QByteArrayView bytes)
{
    if (image.size() < offset + bytes.size())
        image.append(QByteArray(offset + bytes.size() - image.size(), '\0'));
    memcpy(image.data() + offset, bytes.data(), size_t(bytes.size()));
}

QByteArray RecordedDisk::afterKill(qsizetype whole, qsizetype part) const
{
    QByteArray image;
    for (qsizetype i = 0; i < whole; ++i)
        placeBytes(image, writes[i].offset, writes[i].bytes);
    if (part > 0)
        placeBytes(image, writes[whole].offset, QByteArrayView(writes[whole].bytes).first(part));
    return image;
}

RecordingDevice::RecordingDevice(RecordedDisk *disk) : m_disk(disk)
{
    open(QIODevice::ReadWrite | QIODevice::Unbuffered);
}

qint64 RecordingDevice::readData(char *data, qint64 maxSize)
{
    const qint64 size = qBound(qint64(0), m_disk->bytes.size() - pos(), maxSize);
    memcpy(data, m_disk->bytes.constData() + pos(), size_t(size));
    return size;
}

// Full, a disk takes what there is room for and says so.
qint64 RecordingDevice::writeData(const char *data, qint64 size)
{
    const qint64 room = m_disk->capacity < 0 ? size : qMax(qint64(0), m_disk->capacity - pos());
    const qint64 arriving = m_disk->tear ? m_disk->tear(size) : size;
    const QByteArray bytes(data, qMin(arriving, room));
    if (bytes.isEmpty() && size > 0)
        return -1;
    m_disk->writes.append({pos(), bytes});
    placeBytes(m_disk->bytes, pos(), bytes);
    return bytes.size();
}
