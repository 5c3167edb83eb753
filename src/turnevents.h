// Events of the turn cycle: start, turns, delay, ready, death, stop.
#pragma once

#include "encountersnapshots.h"
#include "event.h"

// An event of one creature that its record names alone. The players see it when the creature is a
// character.
class CreatureEvent : public Event {
    Q_OBJECT

protected:
    CreatureEvent(EventType::Code type, int endTag, Creature *creature, ObjectStream *stream);
    CreatureEvent(EventType::Code type, int endTag, ObjectStream *stream);

    Creature *m_creature = nullptr;
};

class StartEncounterEvent : public Event {
    Q_OBJECT

public:
    StartEncounterEvent(const QList<CreatureInit> &characters, const QList<CreatureInit> &monsters,
                        ObjectStream *stream);
    explicit StartEncounterEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;
    bool isVisibleToPlayers() const override { return false; }
    bool startsEncounter() const override { return true; }

private:
    void capture(const QList<CreatureInit> &characters, const QList<CreatureInit> &monsters);

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
    NextTurnEvent(ObjectStream *stream, bool reading);

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    EncounterPosition m_position;
    Creature *m_next = nullptr;
    bool m_nextWasReadied = false;
};

class StopEncounterEvent : public ChangeStateEvent {
    Q_OBJECT

public:
    StopEncounterEvent(ObjectStream *stream, bool reading);

    QString text() const override;
    void redo() override;
    void undo() override;
    bool isVisibleToPlayers() const override { return true; }

private:
    EncounterPosition m_position;
};

class DelayEvent : public CreatureEvent {
    Q_OBJECT

public:
    DelayEvent(Creature *creature, ObjectStream *stream);
    explicit DelayEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;
};

class ReadyEvent : public CreatureEvent {
    Q_OBJECT

public:
    ReadyEvent(Creature *creature, ObjectStream *stream);
    explicit ReadyEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;
};

// A readied action: the creature moves in front of the current one, whose turn goes on.
class EndReadyEvent : public CreatureEvent {
    Q_OBJECT

public:
    EndReadyEvent(Creature *creature, ObjectStream *stream);
    explicit EndReadyEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    void capture();

    Creature *m_current = nullptr;
    int m_fromIndex = -1;
    int m_toIndex = -1;
};

// The end of a delay: the creature moves behind the current one and takes the turn.
class JumpInEvent : public CreatureEvent {
    Q_OBJECT

public:
    JumpInEvent(Creature *creature, ObjectStream *stream);
    explicit JumpInEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    void capture();

    int m_fromIndex = -1;
    int m_toIndex = -1;
    EncounterPosition m_position;
};

// A dead creature leaves the order.
class DiedEvent : public CreatureEvent {
    Q_OBJECT

public:
    DiedEvent(Creature *creature, ObjectStream *stream);
    explicit DiedEvent(ObjectStream *stream);

    QString text() const override;
    void redo() override;
    void undo() override;

private:
    void capture();

    EncounterSnapshot m_before;
};
