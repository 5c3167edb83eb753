// Events that put conditions on creatures and take them off, and that record the use of powers.
#pragma once

#include <memory>
#include <vector>

#include "effectedattributes.h"
#include "event.h"

class Effect;
struct Power;

// Owns the effects that it made, one for each target, whether or not they stand on it just then.
class EffectEvent : public Event {
    Q_OBJECT

public:
    // `source` may be null. The sign of `amount` chooses between the two types of a pair: negative
    // is a penalty, ongoing damage or vulnerability, other is a bonus, regeneration or resistance.
    EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                int endCondition, int effectType, ObjectStream *stream);
    EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                int endCondition, int amount, const EffectedAttributes &attributes,
                ObjectStream *stream);
    EffectEvent(Creature *source, const QList<Creature *> &targets, const QString &text,
                int endCondition, int effectType, int amount, ObjectStream *stream);
    explicit EffectEvent(ObjectStream *stream);
    ~EffectEvent() override;

    QString text() const override;
    void redo() override;
    void undo() override;

protected:
    explicit EffectEvent(EventType::Code type);

    // Writes the record, unless `stream` is null, and makes the effects.
    virtual void init(int eventType, Creature *source, const QList<Creature *> &targets,
                      int effectType, const QString &text, int endCondition, int amount,
                      const EffectedAttributes &attributes, ObjectStream *stream);
    void read(ObjectStream *stream);

    Creature *m_source = nullptr;
    QList<Creature *> m_targets;
    int m_effectType = 0;
    int m_endCondition = 0;
    QString m_text;
    int m_amount = 0;
    EffectedAttributes m_attributes;
    std::vector<std::unique_ptr<Effect>> m_effects;
};

class TotalDefenseEvent : public EffectEvent {
    Q_OBJECT

public:
    TotalDefenseEvent(Creature *creature, ObjectStream *stream);
    explicit TotalDefenseEvent(ObjectStream *stream);

    QString text() const override;
    bool isVisibleToPlayers() const override { return true; }
};

// The record names the effect by its index on the creature at that moment. The event that made the
// effect is older, so that it outlives this one.
class RemoveOnGoingEvent : public Event {
    Q_OBJECT

public:
    RemoveOnGoingEvent(Creature *creature, Effect *effect, ObjectStream *stream);
    explicit RemoveOnGoingEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;

protected:
    RemoveOnGoingEvent(EventType::Code type, Creature *creature, Effect *effect,
                       ObjectStream *stream);
    RemoveOnGoingEvent(EventType::Code type, ObjectStream *stream);

    // Writes the record, unless `stream` is null.
    virtual void init(int eventType, Creature *creature, Effect *effect, ObjectStream *stream);
    // The effect's name, or "Unknown".
    QString conditionText() const;

    Creature *m_creature = nullptr;
    Effect *m_effect = nullptr;
    int m_removedAt = -1;
};

class RemoveAtEndOfTurnEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveAtEndOfTurnEvent(Creature *creature, Effect *effect, ObjectStream *stream);
    explicit RemoveAtEndOfTurnEvent(ObjectStream *stream);

    QString text() const override;
};

class RemoveAtStartOfTurnEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveAtStartOfTurnEvent(Creature *creature, Effect *effect, ObjectStream *stream);
    explicit RemoveAtStartOfTurnEvent(ObjectStream *stream);

    QString text() const override;
};

class RemoveOnSaveEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveOnSaveEvent(Creature *creature, Effect *effect, ObjectStream *stream);
    explicit RemoveOnSaveEvent(ObjectStream *stream);

    QString text() const override;
};

class RemoveAtEndOfEncounterEvent : public RemoveOnGoingEvent {
    Q_OBJECT

public:
    RemoveAtEndOfEncounterEvent(Creature *creature, Effect *effect, ObjectStream *stream);
    explicit RemoveAtEndOfEncounterEvent(ObjectStream *stream);

    QString text() const override;
};

// The power is found by its name at each step: the library may have been read anew since.
class PowerUsageChangedEvent : public Event {
    Q_OBJECT

public:
    // 0: used; 1: unused again; 2 to 7: a recharge roll of `usage` minus 1.
    PowerUsageChangedEvent(Creature *creature, Power *power, int usage, ObjectStream *stream);
    explicit PowerUsageChangedEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    void capture();
    Power *power() const;
    bool isRechargeRoll() const { return m_usage >= 2 && m_usage <= 7; }
    int die() const { return m_usage - 1; }

    Creature *m_creature = nullptr;
    QString m_powerName;
    int m_oldState = 0;
    int m_usage = 0;
};
