#include "loggedevent.h"

#include "objectstream.h"
#include "recordingdevice.h"

QStringList LoggedEvent::journal;

LoggedEvent::LoggedEvent(const QString &text, ObjectStream *stream)
    : Event(EventType::SetAlias), m_text(text)
{
    beginWriting(stream);
    stream->writeString(ID_ALIAS_EVENT_CREATURE, QString());
    stream->writeInt(ID_ALIAS_EVENT_SHOW, 1);
    stream->writeString(ID_ALIAS_EVENT_ALIAS, text);
    endWriting(stream, ID_EVENT_END);
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
