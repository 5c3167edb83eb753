#include "logdamage.h"

#include <QMetaEnum>
#include <QtEndian>
#include <algorithm>
#include <array>

#include "event.h"
#include "streamtags.h"

namespace {

// The end tags of the events' records, in the order of the type numbers from 1.
constexpr std::array EndTags {
    ID_START_ENCOUNTER_EVENT_END,
    ID_NEXT_TURN_EVENT_END,
    ID_STOP_ENCOUNTER_EVENT_END,
    ID_DAMAGE_EVENT_END,
    ID_DAMAGE_EVENT_END,
    ID_HEAL_EVENT_END,
    ID_HEAL_EVENT_END,
    ID_SET_THP_RESOURCE_END,
    ID_EFFECT_EVENT_END,
    ID_ONGOING_EVENT_END,
    ID_ONGOING_EVENT_END,
    ID_ONGOING_EVENT_END,
    ID_ONGOING_EVENT_END,
    ID_ONGOING_EVENT_END,
    ID_DELAY_EVENT_END,
    ID_JUMPIN_EVENT_END,
    ID_READY_EVENT_END,
    ID_END_READY_EVENT_END,
    ID_DIED_EVENT_END,
    ID_FAILED_DST_EVENT_END,
    ID_USE_AP_EVENT_END,
    ID_EFFECT_EVENT_END,
    ID_HEAL_EVENT_END,
    ID_STABILIZE_EVENT_END,
    ID_SR_ACTION_EVENT_END,
    ID_EXT_REST_EVENT_END,
    ID_SET_ENC_EVENT_END,
    ID_ADD_CREATURE_EVENT_END,
    ID_ADD_CREATURE_EVENT_END,
    ID_ADD_CREATURE_EVENT_END,
    ID_ADD_CREATURE_EVENT_END,
    ID_SHOW_HIDE_EVENT_END,
    ID_HEAL_EVENT_END,
    ID_HEAL_EVENT_END,
    ID_SET_VITALITY_EVENT_END,
    ID_REMOVE_CREATURE_EVENT_END,
    ID_REMOVE_CREATURE_EVENT_END,
    ID_ADJUST_INITIATIVE_EVENT_END,
    ID_RENAME_EVENT_END,
    ID_EVENT_END,
    ID_EVENT_END,
    ID_EVENT_END,
};
static_assert(EndTags.size() + 1 == EventType::End);

constexpr int TagSize = 2;
constexpr int LengthAt = TagSize;
constexpr int LongestHead = 7;
constexpr qint64 TypeFieldSize = 7; // tag, length, number
constexpr QByteArrayView TypeHead("\x2c\x01\x04", 3); // of a type that has the size of a number
constexpr qint64 WindowSize = 256 * 1024;
// As a multiple of the file's size.
constexpr qint64 MostCost = 8;

struct Field {
    enum Kind { Whole, End, CutShort, Nonsense };
    Kind kind = End;
    int tag = 0;
    qint64 next = 0; // offset behind it
    qint64 length = 0; // of the value
};

// Walks over the fields of the file.
class LogScan {
public:
    LogScan(LogSource source, qint64 size)
        : m_source(std::move(source)), m_size(size), m_costLeft(MostCost * (size + WindowSize))
    {
    }

    bool isInterruptedWrite(qint64 offset);
    bool isHole(qint64 offset);
    bool endsAt(qint64 offset) { return fieldAt(offset).kind == Field::End; }
    bool isWhole(const LogSpan &span);
    bool isJunk(qint64 offset);
    // Whole records in a stretch, and where their data end: at an end marker, or at its end.
    int countRecords(qint64 from, qint64 limit, qint64 &end);

private:
    QByteArrayView bytesAt(qint64 offset, qint64 count);
    QByteArrayView held(qint64 offset) const
    {
        return QByteArrayView(m_window).sliced(offset - m_windowAt);
    }
    int typeAt(qint64 offset);
    Field fieldAt(qint64 offset);
    qint64 recordEnd(qint64 offset, qint64 limit);
    bool isFollowed(qint64 offset, qint64 limit);
    qint64 nextTypeHead(qint64 offset, qint64 limit);

    LogSource m_source;
    qint64 m_size;
    // Counts bytes fetched and fields looked at. Without this bound a file could be made in which
    // every byte starts a walk to the end.
    qint64 m_costLeft;
    QByteArray m_window;
    qint64 m_windowAt = 0;
};

QByteArrayView LogScan::bytesAt(qint64 offset, qint64 count)
{
    count = std::clamp<qint64>(m_size - offset, 0, count);
    if (offset < m_windowAt || offset + count > m_windowAt + m_window.size()) {
        m_window = m_source(offset, std::max(count, WindowSize));
        m_windowAt = offset;
        m_costLeft -= m_window.size();
    }
    return held(offset).first(std::min<qsizetype>(count, held(offset).size()));
}

Field LogScan::fieldAt(qint64 offset)
{
    --m_costLeft;
    const QByteArrayView head = bytesAt(offset, LongestHead);
    if (head.size() < TagSize)
        return {head.isEmpty() ? Field::End : Field::CutShort, 0, offset, 0};
    const int tag = qFromLittleEndian<quint16>(head.data());
    if (tag == 0)
        return {Field::End, 0, offset, 0};
    if (head.size() <= LengthAt)
        return {Field::CutShort, tag, offset, 0};
    qint64 length = quint8(head.at(LengthAt));
    if (length > 0xFC)
        return {Field::Nonsense, tag, offset, 0};
    const int width = length < 0xFB ? 1 : length == 0xFB ? 3 : 5;
    if (head.size() < LengthAt + width)
        return {Field::CutShort, tag, offset, 0};
    const char *wide = head.data() + LengthAt + 1;
    if (width == 3)
        length = qFromLittleEndian<quint16>(wide);
    else if (width == 5)
        length = qFromLittleEndian<quint32>(wide);
    const qint64 next = offset + LengthAt + width + length;
    return {next > m_size ? Field::CutShort : Field::Whole, tag, next, length};
}

// The type of the event that begins there; 0 for none.
int LogScan::typeAt(qint64 offset)
{
    const QByteArrayView type = bytesAt(offset, TypeFieldSize);
    if (type.size() < TypeFieldSize || !type.startsWith(TypeHead))
        return 0;
    const auto number = qFromLittleEndian<quint32>(type.data() + TypeHead.size());
    return number <= EndTags.size() ? int(number) : 0;
}

// Behind the record that begins there and runs clean to its own end; -1 for none.
qint64 LogScan::recordEnd(qint64 offset, qint64 limit)
{
    const int type = typeAt(offset);
    if (type == 0)
        return -1;
    const int endTag = EndTags[std::size_t(type) - 1];
    qint64 at = offset + TypeFieldSize;
    while (at < limit && m_costLeft > 0) {
        const Field field = fieldAt(at);
        if (field.kind != Field::Whole || field.tag == ID_EVENT_TYPE || field.next > limit)
            return -1;
        if (field.tag == endTag)
            return field.length == 0 ? field.next : -1;
        at = field.next;
    }
    return -1;
}

bool LogScan::isWhole(const LogSpan &span)
{
    const qint64 end = span.offset + span.size;
    qint64 at = span.offset;
    // A later version may have put something ahead of it.
    for (Field field = fieldAt(at); field.tag != ID_EVENT_TYPE; field = fieldAt(at)) {
        if (field.kind != Field::Whole || field.next > end)
            return false;
        at = field.next;
    }
    return recordEnd(at, end) == end;
}

bool LogScan::isFollowed(qint64 offset, qint64 limit)
{
    const QByteArrayView next = bytesAt(offset, TypeHead.size());
    return offset >= limit || next.size() < TagSize || next.startsWith(TypeHead) || endsAt(offset);
}

qint64 LogScan::nextTypeHead(qint64 offset, qint64 limit)
{
    while (offset < limit && m_costLeft > 0) {
        if (bytesAt(offset, TypeHead.size()).size() < TypeHead.size())
            break;
        const QByteArrayView window = held(offset);
        const qsizetype found = window.indexOf(TypeHead);
        if (found >= 0)
            return std::min(offset + found, limit);
        offset += window.size() - TypeHead.size() + 1;
    }
    return limit;
}

int LogScan::countRecords(qint64 from, qint64 limit, qint64 &end)
{
    int count = 0;
    qint64 at = nextTypeHead(from, limit);
    while (at < limit && m_costLeft > 0) {
        const qint64 next = recordEnd(at, limit);
        if (next < 0 || !isFollowed(next, limit)) {
            at = nextTypeHead(at + 1, limit);
            continue;
        }
        ++count;
        if (next < limit && endsAt(next) && !isHole(next)) {
            end = next;
            return count;
        }
        at = nextTypeHead(next, limit);
    }
    end = limit;
    return count;
}

bool LogScan::isHole(qint64 offset)
{
    const QByteArrayView bytes = bytesAt(offset, LeastHole);
    return bytes.size() == LeastHole && bytes.count('\0') == LeastHole;
}

// What a kill leaves between the two writes that end the data in front of an old record.
bool LogScan::isInterruptedWrite(qint64 offset)
{
    const QByteArrayView head = bytesAt(offset, TypeHead.size());
    return head.startsWith(TypeHead.first(TagSize)) && head.endsWith('\xff');
}

// False where the bytes from there on are fields of a log, up to one that runs on behind the end of
// the file: that is only a log's end, cut short.
bool LogScan::isJunk(qint64 offset)
{
    const auto tags = QMetaEnum::fromType<StreamTags::StreamTag>();
    bool known = true;
    while (m_costLeft > 0) {
        const Field field = fieldAt(offset);
        if (field.kind == Field::End)
            return isHole(offset);
        known = known && (field.tag == 0 || tags.valueToKey(field.tag));
        if (field.kind != Field::Whole)
            return field.kind == Field::Nonsense || !known;
        if (field.tag == ID_EVENT_TYPE && typeAt(offset) == 0)
            return true;
        offset = field.next;
    }
    return true;
}

} // namespace

LogDamage findLogDamage(LogSource source, qint64 fileSize, const QList<LogSpan> &spans, qint64 stop)
{
    LogScan scan(std::move(source), fileSize);
    LogDamage damage {fileSize, 0, 0, 0, {}};
    const auto lose = [&](qint64 from, qint64 end, int events) {
        damage.lostBytes += end - from;
        damage.lostEvents += events;
        damage.end = end;
    };
    // A record that lost its end was read on through those behind it.
    for (const LogSpan &span : spans) {
        if (scan.isWhole(span))
            continue;
        qint64 end = span.offset + span.size;
        if (const int swallowed = scan.countRecords(span.offset + TypeFieldSize, end, end))
            lose(span.offset, span.offset + span.size, swallowed);
    }
    if (scan.isInterruptedWrite(stop))
        return damage;
    const bool isHole = scan.isHole(stop);
    if (scan.endsAt(stop) && !isHole)
        return damage;
    qint64 end = fileSize;
    const int behind = scan.countRecords(stop, fileSize, end);
    if (behind > 0 || isHole || scan.isJunk(stop))
        lose(stop, end, behind);
    return damage;
}
