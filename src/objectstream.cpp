#include "objectstream.h"

#include <QDateTime>
#include <QFile>
#include <QMetaEnum>
#include <QScopedValueRollback>
#include <QtEndian>
#include <algorithm>
#include <cerrno>
#include <limits>
#include <unistd.h>
#include <utility>

#include "text.h"
#include "version.h"
#include "windowinterface.h"

namespace {

// The length byte is the length itself up to 250, or tells how wide the length behind it is.
constexpr int Length16 = 0xFB;
constexpr int Length32 = 0xFC;
// Not a length: a reader takes it as the end of the data.
constexpr char NoLength = char(0xFF);

constexpr int TagSize = 2;
constexpr QByteArrayView EndMarker("\0\0", TagSize);
// What every field has: a tag and the first byte of its length.
constexpr int FieldHead = TagSize + 1;
constexpr int LongestHead = FieldHead + int(sizeof(quint32));

constexpr qint64 ReadAhead = 256 * 1024;

constexpr int SupportedMajor = 1;
constexpr int CurrentMinor = 0;

int toInt(QByteArrayView value)
{
    return value.size() == sizeof(qint32) ? qFromLittleEndian<qint32>(value.data()) : 0;
}

QString toText(QByteArrayView value)
{
    const qsizetype zero = value.indexOf('\0');
    return QString::fromUtf8(zero < 0 ? value : value.first(zero));
}

// -1 for a device that is no file.
int handleOf(const QIODevice *device)
{
    const auto *file = qobject_cast<const QFile *>(device);
    return file ? file->handle() : -1;
}

bool writeAt(int handle, qint64 offset, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = pwrite(handle, bytes.data(), size_t(bytes.size()), offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
        offset += written;
    }
    return true;
}

} // namespace

ObjectStream::ObjectStream(QIODevice *device)
    : m_device(device), m_handle(handleOf(device)), m_size(int(qMin(device->size(), LargestLog))),
      m_deviceSize(device->size())
{
}

ObjectStream::~ObjectStream()
{
    writeOut();
    // What still waits is lost with the stream, so there is nothing left to be behind with.
    setBehind(false);
}

// --- writing ---

void ObjectStream::writeInt(int tag, int value)
{
    const qint32 little = qToLittleEndian(qint32(value));
    writeField(tag, QByteArrayView(reinterpret_cast<const char *>(&little), sizeof little));
}

void ObjectStream::writeString(int tag, const QString &text)
{
    writeField(tag, text.toUtf8());
}

void ObjectStream::writeEnd(int tag)
{
    writeField(tag, {});
}

void ObjectStream::writeField(int tag, QByteArrayView value)
{
    m_peeked.tag = 0;
    if (m_dirtyFrom < 0 || m_position < m_data.size())
        cutHere();
    char head[LongestHead];
    qToLittleEndian(quint16(tag), head);
    char *end = head + TagSize;
    if (value.size() < Length16) {
        *end++ = char(value.size());
    } else if (value.size() <= std::numeric_limits<quint16>::max()) {
        *end++ = char(Length16);
        qToLittleEndian(quint16(value.size()), end);
        end += sizeof(quint16);
    } else {
        *end++ = char(Length32);
        qToLittleEndian(quint32(value.size()), end);
        end += sizeof(quint32);
    }
    m_data.resize(m_position + (end - head) + value.size());
    char *field = std::copy(head, end, m_data.data() + m_position);
    std::copy(value.begin(), value.end(), field);
    m_position = m_size = int(m_data.size());
    if (!m_inRecord)
        writeOut();
}

void ObjectStream::markRecord()
{
    m_mark = m_position;
    m_inRecord = true;
}

int ObjectStream::finishRecord()
{
    const int length = m_position - m_mark;
    m_inRecord = false;
    writeOut();
    seek(m_mark);
    return length;
}

void ObjectStream::truncate()
{
    cutHere();
    writeOut();
    if (m_dirtyFrom < 0)
        cutFile();
    seek(m_position);
}

void ObjectStream::cutFile()
{
    if (auto *file = qobject_cast<QFile *>(m_device.get()))
        file->resize(m_size + TagSize);
    m_deviceSize = m_device->size();
}

// Ends the data at the position, in memory; the device follows with the next writeOut().
void ObjectStream::cutHere()
{
    load(m_position);
    const bool endStands = endStandsAt(m_position);
    if (m_dirtyFrom < 0) {
        m_dirtyFrom = m_position;
        m_endAtDirty = endStands;
    } else if (m_position < m_dirtyFrom) {
        m_dirtyFrom = m_position;
        m_endAtDirty = false;
    }
    m_data.truncate(m_position);
    m_size = m_position;
}

bool ObjectStream::endStandsAt(int offset)
{
    load(offset + TagSize);
    return offset >= m_data.size() || QByteArrayView(m_data).sliced(offset).startsWith(EndMarker);
}

void ObjectStream::writeOut()
{
    if (m_dirtyFrom < 0 || !m_device->isWritable())
        return;
    if (m_detached) {
        setBehind(true);
        return;
    }
    const bool destroysUnread = m_damaged || (!m_metEnd && !m_endAtDirty);
    if (m_guard && destroysUnread && !m_guard()) {
        setBehind(true);
        return;
    }
    m_guard = nullptr;
    setBehind(!writeDirty());
    if (m_cutsTail && !m_behind) {
        cutFile();
        m_cutsTail = false;
    }
}

// Every byte that reaches the device leaves data that end where they ended before, or hold all that
// is new. The bytes in between must not read as fields, so the first new field has no valid length
// until the last byte written gives it one.
bool ObjectStream::writeDirty()
{
    if (m_unsyncedFrom < 0 || m_dirtyFrom < m_unsyncedFrom)
        m_unsyncedFrom = m_dirtyFrom;
    if (!m_endAtDirty) {
        // Half a marker would turn the old field's tag into another one, and the reader would go on
        // behind it: its length goes first.
        if (!put(m_dirtyFrom + TagSize, QByteArrayView(&NoLength, 1))
            || !put(m_dirtyFrom, EndMarker))
            return false;
        m_endAtDirty = true;
    }
    if (m_size > m_dirtyFrom && !writeFresh())
        return false;
    m_dirtyFrom = -1;
    return true;
}

bool ObjectStream::writeFresh()
{
    const QByteArray head = m_data.sliced(m_dirtyFrom, FieldHead);
    // The body as it has to look at first, in place.
    m_data[m_dirtyFrom + TagSize] = NoLength;
    m_data.append(EndMarker);
    const bool bodyWritten =
        put(m_dirtyFrom + TagSize, QByteArrayView(m_data).sliced(m_dirtyFrom + TagSize));
    m_data.truncate(m_size);
    m_data[m_dirtyFrom + TagSize] = head[TagSize];
    if (!bodyWritten)
        return false;
    m_endAtDirty = false;
    return put(m_dirtyFrom, head);
}

bool ObjectStream::put(qint64 offset, QByteArrayView bytes)
{
    ++m_writeCount;
    // Without seeks a file takes a record in two thirds of the time.
    const bool isWritten = m_handle >= 0
        ? writeAt(m_handle, offset, bytes)
        : m_device->seek(offset) && m_device->write(bytes.data(), bytes.size()) == bytes.size();
    m_deviceSize = isWritten ? qMax(m_deviceSize, offset + bytes.size()) : m_device->size();
    return isWritten;
}

QByteArrayView ObjectStream::written() const
{
    const qsizetype end = m_dirtyFrom < 0 ? m_size : m_dirtyFrom;
    return QByteArrayView(m_data).first(qMin(end, m_data.size()));
}

QByteArray ObjectStream::wholeLog()
{
    // Behind an end marker there is nothing that anybody could read.
    if (!m_metEnd)
        load(m_size);
    return m_data.first(qMin<qsizetype>(m_size, m_data.size())) + EndMarker.toByteArray();
}

void ObjectStream::detach()
{
    m_detached = true;
    // Whoever detaches it tells why.
    const bool wasTold = std::exchange(m_toldBehind, true);
    setBehind(true);
    m_toldBehind = wasTold;
}

void ObjectStream::replaceDevice(QIODevice *device)
{
    m_device.reset(device);
    m_handle = handleOf(device);
    m_deviceSize = device->size();
    m_dirtyFrom = m_unsyncedFrom = -1;
    m_detached = false;
    setBehind(false);
}

void ObjectStream::flush()
{
    writeOut();
}

void ObjectStream::sync()
{
    if (m_unsyncedFrom < 0 || m_behind)
        return;
    const int from = std::exchange(m_unsyncedFrom, -1);
    if (m_handle < 0 || fdatasync(m_handle) == 0 || errno == EINVAL || errno == EROFS)
        return;
    // A disk may refuse late what it seemed to take; after that nobody knows what it holds.
    m_dirtyFrom = qMin(from, m_size);
    m_endAtDirty = false;
    setBehind(true);
}

void ObjectStream::setBehind(bool behind)
{
    if (m_behind == behind)
        return;
    m_behind = behind;
    windows().setLogBehind(behind);
    if (!behind || m_toldBehind)
        return;
    m_toldBehind = true;
    // Not from within an event's construction: a message box runs a loop of its own.
    QMetaObject::invokeMethod(this, &ObjectStream::tellBehind, Qt::QueuedConnection);
}

void ObjectStream::tellBehind() const
{
    windows().showMessage(
        tr("Cannot Write History File"),
        tr("The history file, <b>%1</b>, can't be written at the moment. Is the disk full or "
           "unplugged?<p>You can go on with the fight. What happens is kept in memory and will be "
           "written as soon as the disk takes it.")
            .arg(asHtml(fileName())));
}

QString ObjectStream::fileName() const
{
    const auto *file = qobject_cast<QFile *>(m_device.get());
    return file ? file->fileName() : QString();
}

// --- reading ---

// Whether so many bytes of data lie behind the position.
bool ObjectStream::have(qint64 count)
{
    const qint64 end = m_position + count;
    if (end > m_data.size())
        load(end);
    return end <= m_data.size();
}

// Holds the bytes up to `end` in memory, and some more, as far as there are data.
void ObjectStream::load(qint64 end)
{
    if (end <= m_data.size() || m_data.size() >= m_size)
        return;
    bool readable = m_device->seek(m_data.size());
    while (m_data.size() < qMin<qint64>(end, m_size)) {
        const qsizetype held = m_data.size();
        const qint64 wanted = qMin<qint64>(ReadAhead, m_size - held);
        m_data.resize(held + wanted);
        const qint64 got = readable ? m_device->read(m_data.data() + held, wanted) : -1;
        m_data.resize(held + qMax<qint64>(got, 0));
        if (got <= 0) {
            // The device has less than it said: what is behind can't be told.
            m_size = int(held);
            m_position = qMin(m_position, m_size);
            m_damaged = true;
            return;
        }
    }
}

QByteArray ObjectStream::bytesAt(qint64 offset, qint64 count)
{
    return m_device->seek(offset) ? m_device->read(count) : QByteArray();
}

ObjectStream::FieldView ObjectStream::takeField()
{
    if (m_peeked.tag == 0)
        return parseField();
    return {m_peeked.consumed, std::exchange(m_peeked.tag, 0), m_peeked.value};
}

ObjectStream::FieldView ObjectStream::parseField()
{
    const int start = m_position;
    const auto cutShort = [&] {
        m_damaged = true;
        return FieldView {m_position - start, 0, {}};
    };
    const auto number = [&]<typename Number>(Number) {
        m_position += sizeof(Number);
        return qFromLittleEndian<Number>(m_data.constData() + m_position - sizeof(Number));
    };
    if (m_position >= m_size) {
        m_metEnd = true;
        return {};
    }
    if (!have(TagSize))
        return cutShort();
    const int tag = number(quint16());
    if (tag == 0) {
        m_metEnd = true;
        return {TagSize, 0, {}};
    }
    if (!have(1))
        return cutShort();
    qint64 length = number(quint8());
    if (length > Length32)
        return cutShort();
    if (length >= Length16) {
        const bool wide = length == Length32;
        if (!have(wide ? sizeof(quint32) : sizeof(quint16)))
            return cutShort();
        length = wide ? number(quint32()) : number(quint16());
    }
    if (!have(length))
        return cutShort();
    const QByteArrayView value = QByteArrayView(m_data).sliced(m_position, length);
    m_position += int(length);
    return {m_position - start, tag, value};
}

ObjectStream::FieldView ObjectStream::search(int tag)
{
    for (bool skipped = false;; skipped = true) {
        const FieldView field = takeField();
        if (field.tag == tag)
            return field;
        if (field.tag == 0) {
            m_position -= field.consumed;
            // Only between two records may the data end.
            if (skipped || tag != ID_EVENT_TYPE)
                m_damaged = true;
            return {};
        }
        // The record that lacks the field ended here.
        if (field.tag == ID_EVENT_TYPE)
            m_damaged = true;
    }
}

StreamField ObjectStream::readField()
{
    const FieldView field = takeField();
    return {field.consumed, field.tag, field.value.toByteArray()};
}

int ObjectStream::readInt(int tag)
{
    return toInt(search(tag).value);
}

QString ObjectStream::readString(int tag)
{
    return toText(search(tag).value);
}

bool ObjectStream::readTo(int tag)
{
    return search(tag).tag == tag;
}

bool ObjectStream::readRecord(QMap<int, StreamField> &record, int endTag)
{
    record.clear();
    for (;;) {
        const StreamField field = readField();
        if (field.tag == 0) {
            m_position -= field.consumed;
            m_damaged = true;
            return false;
        }
        record.insert(field.tag, field);
        if (field.tag == endTag)
            return true;
    }
}

int ObjectStream::fieldInt(const QMap<int, StreamField> &record, int tag)
{
    return toInt(record.value(tag).value);
}

QString ObjectStream::fieldString(const QMap<int, StreamField> &record, int tag)
{
    return toText(record.value(tag).value);
}

StreamField ObjectStream::peekField()
{
    if (m_peeked.tag == 0) {
        m_peeked = readField();
        if (m_peeked.tag == 0)
            m_position -= m_peeked.consumed;
    }
    return m_peeked;
}

bool ObjectStream::nextIs(int tag)
{
    return peekField().tag == tag;
}

bool ObjectStream::recordHolds(qint64 bytes)
{
    // A look ahead: what it meets counts when it is read.
    const QScopedValueRollback position(m_position);
    const QScopedValueRollback metEnd(m_metEnd);
    const QScopedValueRollback damaged(m_damaged);
    const qint64 end = m_position + bytes;
    while (m_position < end) {
        const int tag = parseField().tag;
        if (tag == 0 || tag == ID_EVENT_TYPE)
            return false;
    }
    return true;
}

QList<StreamField> ObjectStream::fieldsAhead(std::initializer_list<int> tags)
{
    const QScopedValueRollback position(m_position);
    const QScopedValueRollback metEnd(m_metEnd);
    const int size = m_size;
    const bool wasDamaged = m_damaged;
    QList<StreamField> found;
    for (FieldView field = parseField(); field.tag != 0; field = parseField()) {
        if (std::find(tags.begin(), tags.end(), field.tag) != tags.end())
            found.append({field.consumed, field.tag, field.value.toByteArray()});
    }
    // What a look ahead met counts when it is read, but for a device that has less than it said.
    m_damaged = wasDamaged || m_size != size;
    return found;
}

void ObjectStream::seek(qint64 offset)
{
    m_peeked.tag = 0;
    m_position = int(qBound(qint64(0), offset, qint64(m_size)));
}

// --- the header ---

bool ObjectStream::readHeader(bool silent)
{
    seek(0);
    if (m_size > 0) {
        m_major = readInt(ID_HEADER_MAJOR_VERSION);
        m_minor = readInt(ID_HEADER_MINOR_VERSION);
        m_version = readString(ID_HEADER_MORVANE_VERSION);
        m_created = readString(ID_HEADER_CREATED);
        if (!readTo(ID_HEADER_END) || !isHeaderValid()) {
            markDamaged();
            m_major = m_minor = 0;
            m_version.clear();
            m_created.clear();
            seek(0);
            cutHere();
            m_cutsTail = bool(m_guard);
        }
    }
    if (m_size == 0) {
        if (m_device->isWritable())
            writeHeader();
        return true;
    }
    if (m_major == SupportedMajor)
        return true;
    if (!silent)
        windows().showMessage(
            tr("History File too New"),
            tr("The history file, <b>%1</b>, was created by Morvane version %2. You need to "
               "upgrade in order to read it.")
                .arg(asHtml(fileName()), asHtml(m_version)));
    return false;
}

bool ObjectStream::isHeaderValid() const
{
    return m_major >= 1 && m_minor >= 0 && !m_version.isEmpty() && !m_created.isEmpty();
}

void ObjectStream::writeHeader()
{
    m_major = SupportedMajor;
    m_minor = CurrentMinor;
    m_version = versionText();
    m_created = currentDateTimeText();
    markRecord();
    writeInt(ID_HEADER_MAJOR_VERSION, m_major);
    writeInt(ID_HEADER_MINOR_VERSION, m_minor);
    writeString(ID_HEADER_MORVANE_VERSION, m_version);
    writeString(ID_HEADER_CREATED, m_created);
    writeEnd(ID_HEADER_END);
    skip(finishRecord());
}

QString ObjectStream::tagName(int tag)
{
    // These came later, and were never given a name here.
    const bool nameless = tag >= ID_RENAME_EVENT_END || tag == ID_ENCOUNTER_ENTRY_ADVENTURE
        || tag == ID_EFFECT_EVENT_TEXT;
    const char *name = QMetaEnum::fromType<StreamTags::StreamTag>().valueToKey(tag);
    return nameless || !name ? QString::number(tag) : QString::fromLatin1(name);
}

#include "moc_objectstream.cpp"
#include "moc_streamtags.cpp"
