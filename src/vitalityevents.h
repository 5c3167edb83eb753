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
    DamageEvent(Creature *source, Creature *target, int damage, const EventRecord &record);
    DamageEvent(Creature *source, const QList<Creature *> &targets, int damage,
                const EventRecord &record);
    explicit DamageEvent(ObjectStream *stream)
        : DamageEvent(nullptr, QList<Creature *>(), 0, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;

protected:
    DamageEvent(EventType::Code type, Creature *source, QList<Creature *> targets, int damage,
                const EventRecord &record);

    int m_damage = 0;
};

class OnGoingDamageEvent : public DamageEvent {
    Q_OBJECT

public:
    OnGoingDamageEvent(Creature *source, Creature *target, int damage, const EventRecord &record);
    OnGoingDamageEvent(Creature *source, const QList<Creature *> &targets, int damage,
                       const EventRecord &record);
    explicit OnGoingDamageEvent(ObjectStream *stream)
        : OnGoingDamageEvent(nullptr, QList<Creature *>(), 0, reading(stream))
    {
    }

    QString text() const override;
};

class HealEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    // `source` may be null. `surges` are spent by each target; a negative number gives them.
    HealEvent(Creature *source, Creature *target, int surges, int hp, const EventRecord &record);
    HealEvent(Creature *source, const QList<Creature *> &targets, int surges, int hp,
              const EventRecord &record);
    explicit HealEvent(ObjectStream *stream)
        : HealEvent(nullptr, QList<Creature *>(), 0, 0, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;

protected:
    HealEvent(EventType::Code type, Creature *source, QList<Creature *> targets, int surges, int hp,
              const EventRecord &record);

    int m_surges = 0;
    int m_hp = 0;

private:
    // What each target gets and spends.
    QString amountText() const;
};

class RegenerationEvent : public HealEvent {
    Q_OBJECT

public:
    RegenerationEvent(Creature *target, int hp, const EventRecord &record);
    explicit RegenerationEvent(ObjectStream *stream)
        : RegenerationEvent(nullptr, 0, reading(stream))
    {
    }

    QString text() const override;
};

// The target spends a surge of its own, as for its second wind.
class AdministerFirstAidEvent : public HealEvent {
    Q_OBJECT

public:
    AdministerFirstAidEvent(Creature *source, Creature *target, const EventRecord &record);
    explicit AdministerFirstAidEvent(ObjectStream *stream)
        : AdministerFirstAidEvent(nullptr, nullptr, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

// Heals by a surge and gives the bonus to the defences.
class SecondWindEvent : public HealEvent {
    Q_OBJECT

public:
    SecondWindEvent(Creature *creature, const EventRecord &record);
    explicit SecondWindEvent(ObjectStream *stream) : SecondWindEvent(nullptr, reading(stream)) { }
    ~SecondWindEvent() override;

    QString text() const override;
    void redo() override;
    void undo() override;
    bool isVisibleToPlayers() const override { return true; }

private:
    // Null when a record names another source than target.
    std::unique_ptr<Effect> m_effect;
};

class GainHealingSurgeEvent : public HealEvent {
    Q_OBJECT

public:
    GainHealingSurgeEvent(Creature *creature, const EventRecord &record);
    explicit GainHealingSurgeEvent(ObjectStream *stream)
        : GainHealingSurgeEvent(nullptr, reading(stream))
    {
    }

    QString text() const override;
    bool isVisibleToPlayers() const override { return true; }
};

class SetTempHPEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    SetTempHPEvent(QList<Creature *> targets, int amount, const EventRecord &record);
    explicit SetTempHPEvent(ObjectStream *stream) : SetTempHPEvent({}, 0, reading(stream)) { }

    QString text() const override;
    void redo() override;

private:
    int m_amount = 0;
};

class UseActionPointEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    UseActionPointEvent(Creature *creature, const EventRecord &record);
    explicit UseActionPointEvent(ObjectStream *stream)
        : UseActionPointEvent(nullptr, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
};

// Marks the second wind used or unused, without healing.
class UseSecondWindEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    // -1: used; 1: gained back.
    UseSecondWindEvent(Creature *creature, int change, const EventRecord &record);
    explicit UseSecondWindEvent(ObjectStream *stream)
        : UseSecondWindEvent(nullptr, 0, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;

private:
    int m_change = -1;
};

class StabilizeEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    StabilizeEvent(Creature *source, Creature *target, const EventRecord &record);
    explicit StabilizeEvent(ObjectStream *stream)
        : StabilizeEvent(nullptr, nullptr, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

class FailedDeathSavingThrowEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    FailedDeathSavingThrowEvent(Creature *creature, const EventRecord &record);
    explicit FailedDeathSavingThrowEvent(ObjectStream *stream)
        : FailedDeathSavingThrowEvent(nullptr, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

class ShortRestEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    ShortRestEvent(const QList<RestedCreature> &rested, const EventRecord &record);
    explicit ShortRestEvent(ObjectStream *stream) : ShortRestEvent({}, reading(stream)) { }

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }

private:
    QList<RestedCreature> m_rested;
};

// The living characters of the encounter, who rest when an extended rest names nobody.
QList<Creature *> livingCharacters();

class ExtendedRestEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    // An empty list stands for the living characters of the encounter and isn't written, so that a
    // replay rests whoever is in the party then.
    ExtendedRestEvent(QList<Creature *> creatures, const EventRecord &record);
    explicit ExtendedRestEvent(ObjectStream *stream) : ExtendedRestEvent({}, reading(stream)) { }

    QString text() const override;
    void redo() override;
    bool isVisibleToPlayers() const override { return true; }
};

// Brings a change that was made outside the history into the log.
class SetVitalityEvent : public Event {
    Q_OBJECT

public:
    SetVitalityEvent(const CreatureVitality &vitality, const EventRecord &record);
    explicit SetVitalityEvent(ObjectStream *stream) : SetVitalityEvent({}, reading(stream)) { }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    CreatureVitality m_oldLive;
    CreatureVitality m_oldShadow;
    CreatureVitality m_newValues;
};
