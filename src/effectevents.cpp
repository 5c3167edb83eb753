#include "effectevents.h"

#include "creature.h"
#include "effect.h"
#include "power.h"
#include "saturated.h"
#include "terms.h"
#include "text.h"

namespace {

EffectValues bySign(const EffectPair &pair, int amount)
{
    const int magnitude = amount < 0 ? saturatedDifference(0, amount) : amount;
    return {amount < 0 ? pair.bad : pair.good, magnitude, {}};
}

EffectValues bySign(int type, int amount)
{
    if (type == ongoingPair.bad)
        return bySign(ongoingPair, amount);
    if (type == resistPair.bad)
        return bySign(resistPair, amount);
    return {type, amount, {}};
}

EffectValues modifierBySign(int amount, const EffectedAttributes &attributes)
{
    EffectValues values = bySign(modifierPair, amount);
    values.attributes = attributes;
    return values;
}

} // namespace

// --- EffectEvent ---

EffectEvent::EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                         int endCondition, int effectType, const EventRecord &record)
    : EffectEvent(EventType::Effect, source, targets, text, endCondition, {effectType, 0, {}},
                  record)
{
}

EffectEvent::EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                         int endCondition, int amount, const EffectedAttributes &attributes,
                         const EventRecord &record)
    : EffectEvent(EventType::Effect, source, targets, text, endCondition,
                  modifierBySign(amount, attributes), record)
{
}

EffectEvent::EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                         int endCondition, int effectType, int amount, const EventRecord &record)
    : EffectEvent(EventType::Effect, source, targets, text, endCondition,
                  bySign(effectType, amount), record)
{
}

EffectEvent::EffectEvent(EventType::Code type, Creature *source, const QList<Creature *> &targets,
                         const QString &text, int endCondition, const EffectValues &values,
                         const EventRecord &record)
    : Event(type, record), m_source(source), m_targets(targets), m_values(values),
      m_endCondition(endCondition), m_text(text)
{
    record.field(m_source);
    record.field(m_targets);
    record.field(ID_EFFECT_EVENT_TYPE, m_values.type);
    record.field(ID_EFFECT_EVENT_EC, m_endCondition);
    if (record.has(ID_EFFECT_EVENT_TEXT, !m_text.isEmpty()))
        record.field(ID_EFFECT_EVENT_TEXT, m_text);
    record.field(ID_EFFECT_EVENT_AMOUNT, m_values.amount);
    record.field(m_values.attributes);
    close(record, ID_EFFECT_EVENT_END);
    m_targets.removeAll(nullptr);
    m_visible = isCharacter(m_source);
    for (Creature *target : std::as_const(m_targets)) {
        m_effects.push_back(std::make_unique<Effect>(m_source, target, m_values.type,
                                                     m_endCondition, m_text, m_values.amount,
                                                     m_values.attributes));
        m_visible = m_visible || isCharacter(target);
    }
}

EffectEvent::~EffectEvent() = default;

QString EffectEvent::text() const
{
    const QString origin = Effect::showsOrigin(m_values.type) ? arrowPrefix(m_source) : QString();
    // The origin stands in front, so that the description doesn't name it again.
    const QString what =
        Effect::describe(nullptr, m_values.type, m_text, m_values.amount, m_values.attributes);
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

TotalDefenseEvent::TotalDefenseEvent(Creature *creature, const EventRecord &record)
    : EffectEvent(EventType::TotalDefense, nullptr, {creature}, QString(),
                  EffectEnd::StartOfTargetsTurn, {EffectType::TotalDefence, 0, {}}, record)
{
}

QString TotalDefenseEvent::text() const
{
    return tr("%1: ").arg(term(Term::TotalDefence)) + displayNames(m_targets);
}

// --- RemoveOnGoingEvent ---

RemoveOnGoingEvent::RemoveOnGoingEvent(Creature *creature, Effect *effect,
                                       const EventRecord &record)
    : RemoveOnGoingEvent(EventType::RemoveOnGoing, creature, effect, record)
{
}

RemoveOnGoingEvent::RemoveOnGoingEvent(EventType::Code type, Creature *creature, Effect *effect,
                                       const EventRecord &record)
    : Event(type, record), m_creature(creature), m_effect(effect)
{
    int index = creature ? creature->indexOfEffect(effect) : -1;
    record.field(m_creature);
    record.field(ID_ONGOING_EVENT_EFFECT, index);
    close(record, ID_ONGOING_EVENT_END);
    if (record.isReading())
        m_effect = m_creature ? m_creature->effectAt(index) : nullptr;
    m_visible = m_effect && (isCharacter(m_effect->origin()) || isCharacter(m_effect->target()));
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
                                               const EventRecord &record)
    : RemoveOnGoingEvent(EventType::RemoveAtEndOfTurn, creature, effect, record)
{
}

QString RemoveAtEndOfTurnEvent::text() const
{
    return tr("End of Turn: Remove ") + conditionText();
}

RemoveAtStartOfTurnEvent::RemoveAtStartOfTurnEvent(Creature *creature, Effect *effect,
                                                   const EventRecord &record)
    : RemoveOnGoingEvent(EventType::RemoveAtStartOfTurn, creature, effect, record)
{
}

QString RemoveAtStartOfTurnEvent::text() const
{
    return tr("Start of Turn: Remove ") + conditionText();
}

RemoveOnSaveEvent::RemoveOnSaveEvent(Creature *creature, Effect *effect, const EventRecord &record)
    : RemoveOnGoingEvent(EventType::RemoveOnSave, creature, effect, record)
{
}

QString RemoveOnSaveEvent::text() const
{
    return tr("Saved: Remove ") + conditionText();
}

RemoveAtEndOfEncounterEvent::RemoveAtEndOfEncounterEvent(Creature *creature, Effect *effect,
                                                         const EventRecord &record)
    : RemoveOnGoingEvent(EventType::RemoveAtEndOfEncounter, creature, effect, record)
{
}

QString RemoveAtEndOfEncounterEvent::text() const
{
    return tr("End of Encounter: Remove ") + conditionText();
}

// --- PowerUsageChangedEvent ---

PowerUsageChangedEvent::PowerUsageChangedEvent(Creature *creature, Power *power, int usage,
                                               const EventRecord &record)
    : Event(EventType::PowerUsageChanged, record), m_creature(creature),
      m_powerName(power ? power->name : QString()), m_usage(usage)
{
    record.field(ID_POWER_EVENT_CREATURE, m_creature);
    record.field(ID_POWER_EVENT_POWER, m_powerName);
    record.field(ID_POWER_EVENT_USAGE, m_usage);
    close(record, ID_EVENT_END);
    if (const Power *found = this->power())
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
