#include "event.h"

#include <algorithm>

#include "creature.h"
#include "objectstream.h"

namespace {

bool isReplaying = false;

} // namespace

Replay::Replay()
{
    isReplaying = true;
}

Replay::~Replay()
{
    isReplaying = false;
}

bool Replay::isRunning()
{
    return isReplaying;
}

Event::Event(EventType::Code type, const EventRecord &record) : m_type(type)
{
    record.begin(type);
}

QString Event::playersText() const
{
    const PlayersNames names;
    return text();
}

Event::~Event() = default;

void Event::skipForward(ObjectStream *stream)
{
    if (stream)
        stream->skip(m_size);
}

void Event::skipBack(ObjectStream *stream)
{
    if (stream)
        stream->skip(-m_size);
}

void Event::close(const EventRecord &record, int endTag)
{
    // Without an end tag the record covers all that the search for it passed.
    m_isWhole = record.end(endTag);
    m_size = record.finish();
}

void ChangeStateEvent::init(Creature *source, Creature *target)
{
    init(source, QList<Creature *> {target});
}

void ChangeStateEvent::init(Creature *source, const QList<Creature *> &targets)
{
    m_source = source;
    m_targets = CreatureSnapshots(withoutNull(targets));
    m_visible = isCharacter(source) || std::any_of(m_targets.begin(), m_targets.end(), isCharacter);
}

void ChangeStateEvent::undo()
{
    m_targets.restore();
}

QString ChangeStateEvent::sourcePrefix() const
{
    return arrowPrefix(m_source);
}

QString displayNameOf(const Creature *creature)
{
    return creature ? creature->displayName() : QString();
}

bool isCharacter(const Creature *creature)
{
    return creature && !creature->isMonster();
}

QString arrowPrefix(const Creature *source)
{
    return source ? QString(source->displayName() + QStringLiteral(" -> ")) : QString();
}

QList<Creature *> withoutNull(const QList<Creature *> &creatures)
{
    QList<Creature *> result = creatures;
    result.removeAll(nullptr);
    return result;
}

#include "moc_event.cpp"
