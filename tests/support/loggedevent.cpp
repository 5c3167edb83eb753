#include "loggedevent.h"

#include "objectstream.h"
#include "recordingdevice.h"

QStringList LoggedEvent::journal;

LoggedEvent::LoggedEvent(const QString &text, ObjectStream *stream)
    : Event(EventType::SetAlias, stream), m_text(text)
{
    const EventRecord record(stream);
    Creature *nobody = nullptr;
    bool show = true;
    record.field(ID_ALIAS_EVENT_CREATURE, nobody);
    record.field(ID_ALIAS_EVENT_SHOW, show);
    record.field(ID_ALIAS_EVENT_ALIAS, m_text);
    close(record, ID_EVENT_END);
}

LoggedEvent::~LoggedEvent()
{
    journal << QStringLiteral("delete ") + m_text;
}

void LoggedEvent::redo()
{
    journal << QStringLiteral("redo ") + m_text;
}

void LoggedEvent::undo()
{
    journal << QStringLiteral("undo ") + m_text;
}

QStringList LoggedEvent::readLog(const QByteArray &log, bool *clean)
{
    RecordedDisk disk;
    disk.bytes = log;
    bool damaged = false;
    QStringList texts;
    {
        ObjectStream stream(new RecordingDevice(&disk));
        stream.setDamageGuard([&damaged] { return damaged = true; });
        if (!stream.readHeader(true))
            return {};
        while (stream.readInt(ID_EVENT_TYPE) != 0) {
            texts << stream.readString(ID_ALIAS_EVENT_ALIAS);
            stream.readTo(ID_EVENT_END);
        }
        stream.writeEnd(ID_EVENT_END);
    }
    if (clean)
        *clean = !damaged;
    return texts;
}

#include "moc_loggedevent.cpp"
