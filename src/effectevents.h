// Events that put conditions on creatures and take them off, and that record the use of powers.
#pragma once

#include <memory>
#include <vector>

#include "effectedattributes.h"
#include "event.h"

class Effect;
struct Power;

// What an effect does, in the form of the record.
struct EffectValues {
    int type = 0;
    int amount = 0;
    EffectedAttributes attributes;
};

// Owns the effects that it made, one for each target, whether or not they stand on it just then.
class EffectEvent : public Event {
    Q_OBJECT

public:
    // `source` may be null. The sign of `amount` chooses between the two types of a pair: negative
    // is a penalty, ongoing damage or vulnerability, other is a bonus, regeneration or resistance.
    EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                int endCondition, int effectType, const EventRecord &record);
    EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                int endCondition, int amount, const EffectedAttributes &attributes,
                const EventRecord &record);
    EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                int endCondition, int effectType, int amount, const EventRecord &record);
    explicit EffectEvent(ObjectStream *stream)
        : EffectEvent(EventType::Effect, nullptr, {}, QString(), 0, {}, reading(stream))
    {
    }
    ~EffectEvent() override;

    QString text() const override;
    void redo() override;
    void undo() override;

protected:
    EffectEvent(EventType::Code type, Creature *source, const QList<Creature *> &targets,
                const QString &text, int endCondition, const EffectValues &values,
                const EventRecord &record);

    Creature *m_source = nullptr;
    QList<Creature *> m_targets;
    EffectValues m_values;
    int m_endCondition = 0;
    QString m_text;
    std::vector<std::unique_ptr<Effect>> m_effects;
};

class TotalDefenseEvent : public EffectEvent {
    Q_OBJECT

public:
    TotalDefenseEvent(Creature *creature, const EventRecord &record);
    explicit TotalDefenseEvent(ObjectStream *stream) : TotalDefenseEvent(nullptr, reading(stream))
    {
    }

    QString text() const override;
    bool isVisibleToPlayers() const override { return true; }
};

// The record names the effect by its index on the creature at that moment. The event that made the
// effect is older, so that it outlives this one.
class RemoveOnGoingEvent : public Event {
    Q_OBJECT

public:
    RemoveOnGoingEvent(Creature *creature, Effect *effect, const EventRecord &record);
    explicit RemoveOnGoingEvent(ObjectStream *stream)
        : RemoveOnGoingEvent(nullptr, nullptr, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

protected:
    RemoveOnGoingEvent(EventType::Code type, Creature *creature, Effect *effect,
                       const EventRecord &record);
    // The effect's name, or "Unknown".
    QString conditionText() const;

    Creature *m_creature = nullptr;
    Effect *m_effect = nullptr;
    int m_removedAt = -1;
};

class RemoveAtEndOfTurnEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveAtEndOfTurnEvent(Creature *creature, Effect *effect, const EventRecord &record);
    explicit RemoveAtEndOfTurnEvent(ObjectStream *stream)
        : RemoveAtEndOfTurnEvent(nullptr, nullptr, reading(stream))
    {
    }

    QString text() const override;
};

class RemoveAtStartOfTurnEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveAtStartOfTurnEvent(Creature *creature, Effect *effect, const EventRecord &record);
    explicit RemoveAtStartOfTurnEvent(ObjectStream *stream)
        : RemoveAtStartOfTurnEvent(nullptr, nullptr, reading(stream))
    {
    }

    QString text() const override;
};

class RemoveOnSaveEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveOnSaveEvent(Creature *creature, Effect *effect, const EventRecord &record);
    explicit RemoveOnSaveEvent(ObjectStream *stream)
        : RemoveOnSaveEvent(nullptr, nullptr, reading(stream))
    {
    }

    QString text() const override;
};

class RemoveAtEndOfEncounterEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveAtEndOfEncounterEvent(Creature *creature, Effect *effect, const EventRecord &record);
    explicit RemoveAtEndOfEncounterEvent(ObjectStream *stream)
        : RemoveAtEndOfEncounterEvent(nullptr, nullptr, reading(stream))
    {
    }

    QString text() const override;
};

// The power is found by its name at each step: the library may have been read anew since.
class PowerUsageChangedEvent : public Event {
    Q_OBJECT

public:
    // 0: used; 1: unused again; 2 to 7: a recharge roll of `usage` minus 1.
    PowerUsageChangedEvent(Creature *creature, Power *power, int usage, const EventRecord &record);
    explicit PowerUsageChangedEvent(ObjectStream *stream)
        : PowerUsageChangedEvent(nullptr, nullptr, 0, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    Power *power() const;
    bool isRechargeRoll() const { return m_usage >= 2 && m_usage <= 7; }
    int die() const { return m_usage - 1; }

    Creature *m_creature = nullptr;
    QString m_powerName;
    int m_oldState = 0;
    int m_usage = 0;
};
