#include "effectevents.h"

#include "creature.h"
#include "effect.h"
#include "findcreature.h"
#include "objectstream.h"
#include "power.h"
#include "saturated.h"
#include "streamrecords.h"
#include "terms.h"
#include "text.h"

namespace {

// A type of effect with the one of opposite sign; both have amounts that aren't negative.
struct SignedType {
    int negative;
    int other;
};

constexpr SignedType ongoingPair {EffectType::OngoingDamage, EffectType::Regeneration};
constexpr SignedType modifierPair {EffectType::Penalty, EffectType::Bonus};
constexpr SignedType resistPair {EffectType::Vulnerable, EffectType::Resist};

struct TypeAndAmount {
    int type;
    int amount;
};

TypeAndAmount bySign(const SignedType &pair, int amount)
{
    const int magnitude = amount < 0 ? saturatedDifference(0, amount) : amount;
    return {amount < 0 ? pair.negative : pair.other, magnitude};
}

TypeAndAmount bySign(int type, int amount)
{
    if (type == ongoingPair.negative)
        return bySign(ongoingPair, amount);
    if (type == resistPair.negative)
        return bySign(resistPair, amount);
    return {type, amount};
}

} // namespace

// --- EffectEvent ---

EffectEvent::EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                         int endCondition, int effectType, ObjectStream *stream)
    : Event(EventType::Effect)
{
    init(m_type, source, targets, effectType, text, endCondition, 0, {}, stream);
}

EffectEvent::EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                         int endCondition, int amount, const EffectedAttributes &attributes,
                         ObjectStream *stream)
    : Event(EventType::Effect)
{
    const TypeAndAmount what = bySign(modifierPair, amount);
    init(m_type, source, targets, what.type, text, endCondition, what.amount, attributes, stream);
}

EffectEvent::EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                         int endCondition, int effectType, int amount, ObjectStream *stream)
    : Event(EventType::Effect)
{
    const TypeAndAmount what = bySign(effectType, amount);
    init(m_type, source, targets, what.type, text, endCondition, what.amount, {}, stream);
}

EffectEvent::EffectEvent(ObjectStream *stream) : Event(EventType::Effect)
{
    read(stream);
}

EffectEvent::EffectEvent(EventType::Code type) : Event(type) { }

EffectEvent::~EffectEvent() = default;

void EffectEvent::init(int eventType, Creature *source, const QList<Creature *> &targets,
                       int effectType, const QString &text, int endCondition, int amount,
                       const EffectedAttributes &attributes, ObjectStream *stream)
{
    m_type = EventType::Code(eventType);
    if (stream) {
        beginWriting(stream);
        writeCreature(stream, source);
        writeCreatureList(stream, targets);
        stream->writeInt(ID_EFFECT_EVENT_TYPE, effectType);
        stream->writeInt(ID_EFFECT_EVENT_EC, endCondition);
        if (!text.isEmpty())
            stream->writeString(ID_EFFECT_EVENT_TEXT, text);
        stream->writeInt(ID_EFFECT_EVENT_AMOUNT, amount);
        writeAttributes(stream, attributes);
        endWriting(stream, ID_EFFECT_EVENT_END);
    }
    m_source = source;
    m_targets = withoutNull(targets);
    m_effectType = effectType;
    m_endCondition = endCondition;
    m_text = text;
    m_amount = amount;
    m_attributes = attributes;
    m_visible = isCharacter(source);
    for (Creature *target : std::as_const(m_targets)) {
        m_effects.push_back(std::make_unique<Effect>(source, target, effectType, endCondition, text,
                                                     amount, attributes));
        m_visible = m_visible || isCharacter(target);
    }
}

void EffectEvent::read(ObjectStream *stream)
{
    Creature *source = readCreature(stream);
    const QList<Creature *> targets = readCreatureList(stream);
    const int effectType = stream->readInt(ID_EFFECT_EVENT_TYPE);
    const int endCondition = stream->readInt(ID_EFFECT_EVENT_EC);
    QString text;
    if (stream->nextIs(ID_EFFECT_EVENT_TEXT))
        text = stream->readString(ID_EFFECT_EVENT_TEXT);
    const int amount = stream->readInt(ID_EFFECT_EVENT_AMOUNT);
    const EffectedAttributes attributes = readAttributes(stream);
    endReading(stream, ID_EFFECT_EVENT_END);
    init(m_type, source, targets, effectType, text, endCondition, amount, attributes, nullptr);
}

QString EffectEvent::text() const
{
    const QString origin = Effect::showsOrigin(m_effectType) ? arrowPrefix(m_source) : QString();
    // The origin stands in front, so that the description doesn't name it again.
    const QString what = Effect::describe(nullptr, m_effectType, m_text, m_amount, m_attributes);
    return origin + tr("%1: ").arg(what) + displayNames(m_targets);
}

void EffectEvent::redo()
{
    for (qsizetype i = 0; i < m_targets.size(); ++i)
        m_targets.at(i)->addEffect(m_effects[std::size_t(i)].get());
}

void EffectEvent::undo()
{
    for (qsizetype i = 0; i < m_targets.size(); ++i)
        m_targets.at(i)->removeEffect(m_effects[std::size_t(i)].get());
}

// --- TotalDefenseEvent ---

TotalDefenseEvent::TotalDefenseEvent(Creature *creature, ObjectStream *stream)
    : EffectEvent(EventType::TotalDefense)
{
    init(m_type, nullptr, {creature}, EffectType::TotalDefence, QString(),
         EffectEnd::StartOfTargetsTurn, 0, {}, stream);
}

TotalDefenseEvent::TotalDefenseEvent(ObjectStream *stream) : EffectEvent(EventType::TotalDefense)
{
    read(stream);
}

QString TotalDefenseEvent::text() const
{
    return tr("%1: ").arg(term(Term::TotalDefence)) + displayNames(m_targets);
}

// --- RemoveOnGoingEvent ---

RemoveOnGoingEvent::RemoveOnGoingEvent(Creature *creature, Effect *effect, ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveOnGoing, creature, effect, stream)
{
}

RemoveOnGoingEvent::RemoveOnGoingEvent(ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveOnGoing, stream)
{
}

RemoveOnGoingEvent::RemoveOnGoingEvent(EventType::Code type, Creature *creature, Effect *effect,
                                       ObjectStream *stream)
    : Event(type)
{
    init(type, creature, effect, stream);
}

RemoveOnGoingEvent::RemoveOnGoingEvent(EventType::Code type, ObjectStream *stream) : Event(type)
{
    Creature *creature = readCreature(stream);
    const int index = stream->readInt(ID_ONGOING_EVENT_EFFECT);
    endReading(stream, ID_ONGOING_EVENT_END);
    init(type, creature, creature ? creature->effectAt(index) : nullptr, nullptr);
}

void RemoveOnGoingEvent::init(int eventType, Creature *creature, Effect *effect,
                              ObjectStream *stream)
{
    m_type = EventType::Code(eventType);
    if (stream) {
        beginWriting(stream);
        writeCreature(stream, creature);
        stream->writeInt(ID_ONGOING_EVENT_EFFECT, creature ? creature->indexOfEffect(effect) : -1);
        endWriting(stream, ID_ONGOING_EVENT_END);
    }
    m_creature = creature;
    m_effect = effect;
    m_visible = effect && (isCharacter(effect->origin()) || isCharacter(effect->target()));
}

QString RemoveOnGoingEvent::conditionText() const
{
    return m_effect ? m_effect->conditionText() : tr("Unknown");
}

QString RemoveOnGoingEvent::text() const
{
    return m_effect ? tr("Remove ") + conditionText() : conditionText();
}

void RemoveOnGoingEvent::redo()
{
    if (m_creature && m_effect)
        m_removedAt = m_creature->removeEffect(m_effect);
}

void RemoveOnGoingEvent::undo()
{
    if (m_creature && m_effect && m_removedAt >= 0)
        m_creature->insertEffect(m_removedAt, m_effect);
}

// --- its subclasses ---

RemoveAtEndOfTurnEvent::RemoveAtEndOfTurnEvent(Creature *creature, Effect *effect,
                                               ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveAtEndOfTurn, creature, effect, stream)
{
}

RemoveAtEndOfTurnEvent::RemoveAtEndOfTurnEvent(ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveAtEndOfTurn, stream)
{
}

QString RemoveAtEndOfTurnEvent::text() const
{
    return tr("End of Turn: Remove ") + conditionText();
}

RemoveAtStartOfTurnEvent::RemoveAtStartOfTurnEvent(Creature *creature, Effect *effect,
                                                   ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveAtStartOfTurn, creature, effect, stream)
{
}

RemoveAtStartOfTurnEvent::RemoveAtStartOfTurnEvent(ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveAtStartOfTurn, stream)
{
}

QString RemoveAtStartOfTurnEvent::text() const
{
    return tr("Start of Turn: Remove ") + conditionText();
}

RemoveOnSaveEvent::RemoveOnSaveEvent(Creature *creature, Effect *effect, ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveOnSave, creature, effect, stream)
{
}

RemoveOnSaveEvent::RemoveOnSaveEvent(ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveOnSave, stream)
{
}

QString RemoveOnSaveEvent::text() const
{
    return tr("Saved: Remove ") + conditionText();
}

RemoveAtEndOfEncounterEvent::RemoveAtEndOfEncounterEvent(Creature *creature, Effect *effect,
                                                         ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveAtEndOfEncounter, creature, effect, stream)
{
}

RemoveAtEndOfEncounterEvent::RemoveAtEndOfEncounterEvent(ObjectStream *stream)
    : RemoveOnGoingEvent(EventType::RemoveAtEndOfEncounter, stream)
{
}

QString RemoveAtEndOfEncounterEvent::text() const
{
    return tr("End of Encounter: Remove ") + conditionText();
}

// --- PowerUsageChangedEvent ---

PowerUsageChangedEvent::PowerUsageChangedEvent(Creature *creature, Power *power, int usage,
                                               ObjectStream *stream)
    : Event(EventType::PowerUsageChanged), m_creature(creature),
      m_powerName(power ? power->name : QString()), m_usage(usage)
{
    beginWriting(stream);
    stream->writeString(ID_POWER_EVENT_CREATURE, displayNameOf(creature));
    stream->writeString(ID_POWER_EVENT_POWER, m_powerName);
    stream->writeInt(ID_POWER_EVENT_USAGE, usage);
    endWriting(stream, ID_EVENT_END);
    capture();
}

PowerUsageChangedEvent::PowerUsageChangedEvent(ObjectStream *stream)
    : Event(EventType::PowerUsageChanged)
{
    m_creature = findCreature(stream->readString(ID_POWER_EVENT_CREATURE), true);
    m_powerName = stream->readString(ID_POWER_EVENT_POWER);
    m_usage = stream->readInt(ID_POWER_EVENT_USAGE);
    endReading(stream, ID_EVENT_END);
    capture();
}

void PowerUsageChangedEvent::capture()
{
    if (const Power *found = power())
        m_oldState = found->usageState;
}

Power *PowerUsageChangedEvent::power() const
{
    return m_creature ? m_creature->powerByName(m_powerName) : nullptr;
}

QString PowerUsageChangedEvent::text() const
{
    const QString name = displayNameOf(m_creature);
    const QString powerName = plainText(m_powerName); // which is rich text in a stat block
    if (m_usage == 0)
        return tr("%1: Used %2").arg(name, powerName);
    if (m_usage == 1)
        return tr("%1: Unused %2").arg(name, powerName);
    if (!isRechargeRoll())
        return QString();
    const Power *found = power();
    const int limit = found ? found->rechargeLimit() : 2;
    const QString form = die() < limit ? tr("Recharge %1: %2 - %3") : tr("Recharge %1: %2 + %3");
    return form.arg(QString::number(die()), name, powerName);
}

void PowerUsageChangedEvent::redo()
{
    Power *found = power();
    if (!found)
        return;
    if (m_usage == 0 || m_usage == 1)
        found->setUsed(m_usage == 0);
    else if (isRechargeRoll())
        found->setUsed(die() < found->rechargeLimit());
    Q_EMIT m_creature->doCreatureUpdated(m_creature);
}

void PowerUsageChangedEvent::undo()
{
    Power *found = power();
    if (!found)
        return;
    found->usageState = m_oldState;
    Q_EMIT m_creature->doCreatureUpdated(m_creature);
}

#include "moc_effectevents.cpp"
