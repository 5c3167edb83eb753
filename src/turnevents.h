// Events of the turn cycle: start, turns, delay, ready, death, stop.
#pragma once

#include "encountersnapshots.h"
#include "event.h"

// An event of one creature that its record names alone. The players see it when the creature is a
// character.
class CreatureEvent : public Event {
    Q_OBJECT

protected:
    CreatureEvent(EventType::Code type, int endTag, Creature *creature, const EventRecord &record);

    Creature *m_creature = nullptr;
};

class StartEncounterEvent : public Event {
    Q_OBJECT

public:
    StartEncounterEvent(QList<CreatureInit> characters, QList<CreatureInit> monsters,
                        const EventRecord &record);
    explicit StartEncounterEvent(ObjectStream *stream)
        : StartEncounterEvent({}, {}, reading(stream))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;
    bool isVisibleToPlayers() const override { return false; }
    bool startsEncounter() const override { return true; }

private:
    CreatureList m_oldOrder;
    VitalityBefore m_oldVitality;
    QList<CreatureItem> m_oldItems;
    CreatureList m_newOrder;
    // What the creatures were when the encounter was started, whatever their files say by now.
    // Empty in old logs.
    QList<CreatureVitality> m_newVitality;
    QList<CreatureItem> m_newItems;
    Creature *m_first = nullptr;
};

class NextTurnEvent : public Event {
    Q_OBJECT

public:
    NextTurnEvent(ObjectStream *stream, bool reading) : NextTurnEvent(EventRecord(stream, reading))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    explicit NextTurnEvent(const EventRecord &record);

    EncounterPosition m_position;
    Creature *m_next = nullptr;
    bool m_nextWasReadied = false;
};

class StopEncounterEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    StopEncounterEvent(ObjectStream *stream, bool reading)
        : StopEncounterEvent(EventRecord(stream, reading))
    {
    }

    QString text() const override;
    void redo() override;
    void undo() override;
    bool isVisibleToPlayers() const override { return true; }

private:
    explicit StopEncounterEvent(const EventRecord &record);

    EncounterPosition m_position;
};

class DelayEvent : public CreatureEvent {
    Q_OBJECT

public:
    DelayEvent(Creature *creature, const EventRecord &record);
    explicit DelayEvent(ObjectStream *stream) : DelayEvent(nullptr, reading(stream)) { }

    QString text() const override;
    void redo() override;
    void undo() override;
};

class ReadyEvent : public CreatureEvent {
    Q_OBJECT

public:
    ReadyEvent(Creature *creature, const EventRecord &record);
    explicit ReadyEvent(ObjectStream *stream) : ReadyEvent(nullptr, reading(stream)) { }

    QString text() const override;
    void redo() override;
    void undo() override;
};

// A readied action: the creature moves in front of the current one, whose turn goes on.
class EndReadyEvent : public CreatureEvent {
    Q_OBJECT

public:
    EndReadyEvent(Creature *creature, const EventRecord &record);
    explicit EndReadyEvent(ObjectStream *stream) : EndReadyEvent(nullptr, reading(stream)) { }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    Creature *m_current = nullptr;
    int m_fromIndex = -1;
    int m_toIndex = -1;
};

// The end of a delay: the creature moves behind the current one and takes the turn.
class JumpInEvent : public CreatureEvent {
    Q_OBJECT

public:
    JumpInEvent(Creature *creature, const EventRecord &record);
    explicit JumpInEvent(ObjectStream *stream) : JumpInEvent(nullptr, reading(stream)) { }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    int m_fromIndex = -1;
    int m_toIndex = -1;
    EncounterPosition m_position;
};

// A dead creature leaves the order.
class DiedEvent : public CreatureEvent {
    Q_OBJECT

public:
    DiedEvent(Creature *creature, const EventRecord &record);
    explicit DiedEvent(ObjectStream *stream) : DiedEvent(nullptr, reading(stream)) { }

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    EncounterSnapshot m_before;
};
