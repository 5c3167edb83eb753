// Events of hit points, surges, action points and rests.
#pragma once

#include <memory>

#include "encountersnapshots.h"
#include "event.h"

class Effect;

class DamageEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    // `source` may be null.
    DamageEvent(Creature *source, Creature *target, int damage, ObjectStream *stream);
    DamageEvent(Creature *source, const QList<Creature *> &targets, int damage,
                ObjectStream *stream);
    explicit DamageEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;

protected:
    DamageEvent(EventType::Code type, Creature *source, const QList<Creature *> &targets,
                int damage, ObjectStream *stream);
    DamageEvent(EventType::Code type, ObjectStream *stream);

    int m_damage = 0;
};

class OnGoingDamageEvent : public DamageEvent {
    Q_OBJECT

public:
    OnGoingDamageEvent(Creature *source, Creature *target, int damage, ObjectStream *stream);
    OnGoingDamageEvent(Creature *source, const QList<Creature *> &targets, int damage,
                       ObjectStream *stream);
    explicit OnGoingDamageEvent(ObjectStream *stream);

    QString text() const override;
};

class HealEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    // `source` may be null. `surges` are spent by each target; a negative number gives them.
    HealEvent(Creature *source, Creature *target, int surges, int hp, ObjectStream *stream);
    HealEvent(Creature *source, const QList<Creature *> &targets, int surges, int hp,
              ObjectStream *stream);
    explicit HealEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;

protected:
    HealEvent(EventType::Code type, Creature *source, const QList<Creature *> &targets, int surges,
              int hp, ObjectStream *stream);
    HealEvent(EventType::Code type, ObjectStream *stream);

    int m_surges = 0;
    int m_hp = 0;

private:
    // What each target gets and spends.
    QString amountText() const;
};

class RegenerationEvent : public HealEvent {
    Q_OBJECT

public:
    RegenerationEvent(Creature *target, int hp, ObjectStream *stream);
    explicit RegenerationEvent(ObjectStream *stream);

    QString text() const override;
};

// The target spends a surge of its own, as for its second wind.
class AdministerFirstAidEvent : public HealEvent {
    Q_OBJECT

public:
    AdministerFirstAidEvent(Creature *source, Creature *target, ObjectStream *stream);
    explicit AdministerFirstAidEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

// Heals by a surge and gives the bonus to the defences.
class SecondWindEvent : public HealEvent {
    Q_OBJECT

public:
    SecondWindEvent(Creature *creature, ObjectStream *stream);
    explicit SecondWindEvent(ObjectStream *stream);
    ~SecondWindEvent() override;

    QString text() const override;
    void redo() override;
    void undo() override;
    bool isVisibleToPlayers() const override { return true; }

private:
    void makeEffect();

    // Null when a record names another source than target.
    std::unique_ptr<Effect> m_effect;
};

class GainHealingSurgeEvent : public HealEvent {
    Q_OBJECT

public:
    GainHealingSurgeEvent(Creature *creature, ObjectStream *stream);
    explicit GainHealingSurgeEvent(ObjectStream *stream);

    QString text() const override;
    bool isVisibleToPlayers() const override { return true; }
};

class SetTempHPEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    SetTempHPEvent(const QList<Creature *> &targets, int amount, ObjectStream *stream);
    explicit SetTempHPEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;

private:
    int m_amount = 0;
};

class UseActionPointEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    UseActionPointEvent(Creature *creature, ObjectStream *stream);
    explicit UseActionPointEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
};

// Marks the second wind used or unused, without healing.
class UseSecondWindEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    // -1: used; 1: gained back.
    UseSecondWindEvent(Creature *creature, int change, ObjectStream *stream);
    explicit UseSecondWindEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;

private:
    int m_change = -1;
};

class StabilizeEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    StabilizeEvent(Creature *source, Creature *target, ObjectStream *stream);
    explicit StabilizeEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

class FailedDeathSavingThrowEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    FailedDeathSavingThrowEvent(Creature *creature, ObjectStream *stream);
    explicit FailedDeathSavingThrowEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

class ShortRestEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    ShortRestEvent(const QList<RestedCreature> &rested, ObjectStream *stream);
    explicit ShortRestEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }

private:
    void capture(const QList<RestedCreature> &rested);

    QList<RestedCreature> m_rested;
};

// Those of the encounter, whom an extended rest without a list means.
QList<Creature *> livingCharacters();

class ExtendedRestEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    // An empty list stands for the living characters of the encounter and isn't written, so that a
    // replay rests whoever is in the party then.
    ExtendedRestEvent(const QList<Creature *> &creatures, ObjectStream *stream);
    explicit ExtendedRestEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

// Brings a change that was made outside the history into the log.
class SetVitalityEvent : public Event {
    Q_OBJECT

public:
    SetVitalityEvent(const CreatureVitality &vitality, ObjectStream *stream);
    explicit SetVitalityEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    void capture();

    CreatureVitality m_oldLive;
    CreatureVitality m_oldShadow;
    CreatureVitality m_newValues;
};
