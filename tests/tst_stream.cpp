#include <QBuffer>
#include <QTemporaryFile>
#include <memory>

#include "datatable.h"
#include "objectstream.h"
#include "recordingdevice.h"
#include "scriptedwindows.h"
#include "testhome.h"
#include "version.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray EndMarker(2, '\0');

// 16 bits, little-endian.
QByteArray number16(int number)
{
    return QByteArray(1, char(number)) + char(number >> 8);
}

// Fields as they stand in the file, put together by hand.
QByteArray field(int tag, const QByteArray &value)
{
    return number16(tag) + char(value.size()) + value;
}

QByteArray intField(int tag, int value)
{
    return field(tag, number16(value & 0xffff) + number16((value >> 16) & 0xffff));
}

QByteArray header(int major = 1, int minor = 0, const QByteArray &version = "1.5.09 Beta",
                  const QByteArray &created = "2026-01-31-20-15-00")
{
    return intField(2, major) + intField(3, minor) + field(4, version) + field(5, created)
        + field(1, {});
}

QByteArray eventRecord(int type)
{
    return intField(ID_EVENT_TYPE, type) + field(ID_NEXT_TURN_EVENT_END, {});
}

// Reads the log as the history does.
QList<int> readEvents(ObjectStream &stream)
{
    QList<int> types;
    while (const int type = stream.readInt(ID_EVENT_TYPE)) {
        types << type;
        stream.readTo(ID_NEXT_TURN_EVENT_END);
    }
    return types;
}

int writeEvent(ObjectStream &stream, int type)
{
    stream.markRecord();
    stream.writeInt(ID_EVENT_TYPE, type);
    stream.writeEnd(ID_NEXT_TURN_EVENT_END);
    const int size = stream.finishRecord();
    stream.skip(size);
    return size;
}

} // namespace

class StreamTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void fieldHasShortestLength();
    void writesReachTheDeviceAtTheEndOfARecord();
    void recordInAnyOrder();
    void uselessLengthsEndTheData();
    void damagedHeaderCountsAsEmpty_data();
    void damagedHeaderCountsAsEmpty();
    void damageIsGuarded_data();
    void damageIsGuarded();
    void failedWriteIsMadeUpFor();
    void hugeFileIsReadNoFurtherThanItsEnd();
    void foreignTagsHaveNoName();

private:
    // A stream on this content; `m_disk` shows what becomes of it.
    std::unique_ptr<ObjectStream> open(const QByteArray &content);

    ScriptedWindows m_windows;
    RecordedDisk m_disk;
};

void StreamTest::init()
{
    failOnWarnings();
    m_windows.shown.clear();
    m_disk = {};
}

std::unique_ptr<ObjectStream> StreamTest::open(const QByteArray &content)
{
    m_disk.bytes = content;
    return std::make_unique<ObjectStream>(new RecordingDevice(&m_disk));
}

void StreamTest::fieldHasShortestLength()
{
    const std::pair<int, QByteArray> cases[] = {{0, QByteArray(1, '\0')},
                                                {250, "\xfa"},
                                                {251, QByteArray("\xfb\xfb\0", 3)},
                                                {65535, "\xfb\xff\xff"},
                                                {65536, QByteArray("\xfc\0\0\1\0", 5)},
                                                // over several chunks of reading
                                                {700000, QByteArray("\xfc\x60\xae\x0a\0", 5)}};
    for (const auto &[size, length] : cases) {
        const QByteArray value(size, 'x');
        auto writer = open({});
        writer->writeField(0x0374, value);
        QCOMPARE(m_disk.bytes, number16(0x0374) + length + value + EndMarker);
        QCOMPARE(writer->size(), m_disk.bytes.size() - EndMarker.size());
        QCOMPARE(writer->position(), writer->size());

        auto reader = open(m_disk.bytes);
        const StreamField read = reader->readField();
        QCOMPARE(read.tag, 0x0374);
        QVERIFY(read.value == value);
        QCOMPARE(read.consumed, writer->size());
        QCOMPARE(reader->readField().tag, 0);
    }
}

void StreamTest::writesReachTheDeviceAtTheEndOfARecord()
{
    auto stream = open({});
    stream->readHeader(false);
    const int start = stream->position();
    const qsizetype writes = m_disk.writes.size();

    stream->markRecord();
    stream->writeInt(ID_EVENT_TYPE, 4);
    stream->writeString(ID_CREATURE_NAME, u"Aria"_s);
    stream->writeEnd(ID_DAMAGE_EVENT_END);
    QCOMPARE(m_disk.writes.size(), writes);
    const QByteArray record =
        intField(ID_EVENT_TYPE, 4) + field(ID_CREATURE_NAME, "Aria") + field(340, {});
    QCOMPARE(stream->finishRecord(), int(record.size()));

    QCOMPARE(stream->position(), start);
    QCOMPARE(m_disk.bytes.mid(start), record + EndMarker);
    // The first bytes of the record go last, over the old end marker.
    QCOMPARE(m_disk.writes.last().offset, start);
    QVERIFY(m_disk.writes.last().bytes.startsWith(number16(ID_EVENT_TYPE)));

    stream->skip(int(record.size()));
    stream->writeEnd(7);
    QCOMPARE(m_disk.bytes.mid(start), record + field(7, {}) + EndMarker);
}

void StreamTest::recordInAnyOrder()
{
    auto stream = open(field(11, "text") + intField(99, 5) + intField(10, 1) + field(12, {})
                       + intField(13, 9));
    QMap<int, StreamField> record;
    QVERIFY(stream->readRecord(record, 12));
    QCOMPARE(ObjectStream::fieldInt(record, 10), 1);
    QCOMPARE(ObjectStream::fieldString(record, 11), u"text");
    QCOMPARE(ObjectStream::fieldInt(record, 13), 0);
    QCOMPARE(ObjectStream::fieldString(record, 13), QString());
    QVERIFY(stream->nextIs(13));
}

void StreamTest::uselessLengthsEndTheData()
{
    const QByteArray tag = number16(11);
    const QByteArray cases[] = {"\x0b", // half a tag
                                tag,
                                tag + "\xfb\x01",
                                tag + "\x08" + "abc",
                                tag + "\xfc\xff\xff\xff\xff" + "abc",
                                tag + QByteArray("\xfc\0\0\0\x80", 5) + "abc",
                                tag + '\xfd' + eventRecord(1),
                                tag + '\xfe' + eventRecord(1),
                                tag + '\xff' + eventRecord(1)};
    for (const QByteArray &bytes : cases) {
        auto stream = open(intField(10, 1) + bytes);
        QCOMPARE(stream->readInt(10), 1);
        const int end = stream->position();
        QCOMPARE(stream->peekField().tag, 0);
        QVERIFY(!stream->readTo(11));
        QVERIFY2(stream->position() == end, bytes.toHex().constData());
        // The next field is written over it.
        stream->writeInt(12, 5);
        stream->seek(0);
        QCOMPARE(stream->readInt(12), 5);
    }
}

void StreamTest::damagedHeaderCountsAsEmpty_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("random bytes") << QByteArray("Once upon a time\nin a dungeon");
    QTest::newRow("zeros") << QByteArray(40, '\0');
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("no end tag") << header().chopped(3) + EndMarker;
    QTest::newRow("no version") << header(1, 0, "") + eventRecord(1);
    QTest::newRow("no date") << header(1, 0, "1", "") + eventRecord(1);
    QTest::newRow("major version 0") << header(0) + eventRecord(1);
    QTest::newRow("minor version below 0") << header(1, -1) + eventRecord(1);
}

void StreamTest::damagedHeaderCountsAsEmpty()
{
    QFETCH(QByteArray, content);
    auto stream = open(content);
    QByteArray kept;
    stream->setDamageGuard([&] {
        kept = m_disk.bytes;
        return true;
    });
    QVERIFY(stream->readHeader(false));
    QCOMPARE(kept, content);
    const QByteArray fresh =
        header(1, 0, versionText().toUtf8(), stream->created().toUtf8()) + EndMarker;
    QVERIFY(m_disk.bytes.startsWith(fresh));
    QVERIFY(m_windows.shown.isEmpty());

    // The old events behind it are out of reach.
    auto again = open(m_disk.bytes);
    QVERIFY(again->readHeader(false));
    QCOMPARE(readEvents(*again), QList<int>());
}

void StreamTest::damageIsGuarded_data()
{
    addColumns<QByteArray, bool, bool>({"events", "read", "copied"});

    const QByteArray two = eventRecord(1) + eventRecord(2);
    QTest::newRow("clean") << two + EndMarker << true << false;
    QTest::newRow("no marker") << two << true << false;
    QTest::newRow("old tail behind the marker") << two + EndMarker + "old tail" << true << false;
    QTest::newRow("cut in a record") << two.chopped(2) << true << true;
    QTest::newRow("marker in a record") << two.chopped(3) + EndMarker << true << true;
    QTest::newRow("one byte too many") << two + "\x2c" << true << true;
    QTest::newRow("invalid length") << two + number16(300) + "\xff" << true << true;
    QTest::newRow("record without its end")
        << intField(ID_EVENT_TYPE, 1) + eventRecord(2) + EndMarker << true << true;
    QTest::newRow("fields without a record") << two + intField(341, 5) + EndMarker << true << true;
    QTest::newRow("never read") << two + EndMarker << false << true;
    QTest::newRow("never read, but empty") << EndMarker << false << false;
}

void StreamTest::damageIsGuarded()
{
    auto [events, read, copied] = fetch<QByteArray, bool, bool>({"events", "read", "copied"});
    auto stream = open(header() + events);
    QVERIFY(stream->readHeader(false));
    if (read)
        readEvents(*stream);
    QList<QByteArray> copies;
    stream->setDamageGuard([&] {
        copies << m_disk.bytes;
        return true;
    });
    // The second write has nothing left to destroy.
    writeEvent(*stream, 7);
    writeEvent(*stream, 8);
    QCOMPARE(copies, copied ? QList<QByteArray>({header() + events}) : QList<QByteArray>());
}

void StreamTest::failedWriteIsMadeUpFor()
{
    auto stream = open({});
    stream->readHeader(false);
    const int start = stream->position();
    writeEvent(*stream, 1);
    m_disk.capacity = m_disk.bytes.size() + 4;
    writeEvent(*stream, 2);
    writeEvent(*stream, 3);
    QVERIFY(stream->isBehind());
    QVERIFY(m_windows.logBehind);
    // What waits can be read all the same, and the position moves over it.
    stream->seek(start);
    QCOMPARE(readEvents(*stream), QList<int>({1, 2, 3}));
    QTRY_COMPARE(m_windows.shown.size(), 1);

    m_disk.capacity = -1;
    stream->flush();
    QVERIFY(!m_windows.logBehind);
    QCOMPARE(m_disk.bytes.mid(start), eventRecord(1) + eventRecord(2) + eventRecord(3) + EndMarker);
    QCOMPARE(m_windows.shown.size(), 1);
}

void StreamTest::hugeFileIsReadNoFurtherThanItsEnd()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(header() + eventRecord(1) + EndMarker);
    file.flush();
    if (!file.resize(qint64(5) << 30))
        QSKIP("no file of 5 GB can be made here");
    auto *device = new QFile(file.fileName());
    QVERIFY(device->open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    ObjectStream stream(device);
    QVERIFY(stream.readHeader(false));
    QCOMPARE(readEvents(stream), QList<int>({1}));
    QVERIFY(stream.size() > 0);
}

void StreamTest::foreignTagsHaveNoName()
{
    for (int nameless : {0, 6, 146, 374, 700, 800, -1})
        QCOMPARE(ObjectStream::tagName(nameless), QString::number(nameless));
}

MORVANE_TEST_MAIN(QGuiApplication, StreamTest)

#include "tst_stream.moc"
