// The base of all entries of the history.
#pragma once

#include <QList>
#include <QObject>

#include "creaturelist.h"
#include "creaturesnapshots.h"
#include "eventrecord.h"
#include "memorytracker.h"

class ObjectStream;

// The numbers of the events in the log. They are fixed by the file format and never reused.
namespace EventType {
enum Code {
    StartEncounter = 1,
    NextTurn = 2,
    StopEncounter = 3,
    Damage = 4,
    OnGoingDamage = 5,
    Heal = 6,
    Regeneration = 7,
    SetTempHP = 8,
    Effect = 9,
    RemoveOnGoing = 10,
    RemoveAtEndOfTurn = 11,
    RemoveAtStartOfTurn = 12,
    RemoveOnSave = 13,
    RemoveAtEndOfEncounter = 14,
    Delay = 15,
    JumpIn = 16,
    Ready = 17,
    EndReady = 18,
    Died = 19,
    FailedDeathSavingThrow = 20,
    UseActionPoint = 21,
    TotalDefense = 22,
    SecondWind = 23,
    Stabilize = 24,
    ShortRest = 25,
    ExtendedRest = 26,
    SetEncounter = 27,
    AddMonster = 28,
    AddMonsters = 29,
    SetParty = 30,
    AddCharacters = 31,
    ShowHide = 32,
    AdministerFirstAid = 33,
    GainHealingSurge = 34,
    SetVitality = 35,
    RemoveCreatures = 36,
    RemoveCurrent = 37,
    AdjustInitiative = 38,
    RenameCreature = 39,
    PowerUsageChanged = 40,
    SetAlias = 41,
    UseSecondWind = 42,
    End // behind the last
};
}

// While one lives, the history reads a log and applies its events.
class Replay {
public:
    Replay();
    ~Replay();
    Replay(const Replay &) = delete;
    Replay &operator=(const Replay &) = delete;

    static bool isRunning();
};

// Written or read once, redone and undone any number of times. A record holds only the event's
// arguments: what undo needs is captured from the state at construction, which is the same when a
// log is replayed in order. So nothing may change between construction and the first redo().
//
// Each class has one constructor that names the fields of the record, with the event's arguments:
// on a stream to write to it writes them. Another one calls it with empty arguments and a record to
// read, and the fields fill them. Both leave the stream at the record's start. A creature, effect
// or power that a damaged log names in vain is null, and what an event would do with it isn't done.
class Event : public QObject {
    Q_OBJECT

public:
    ~Event() override;

    // The line of the history list.
    virtual QString text() const = 0;
    // The same with the names that the players may know.
    QString playersText() const;
    virtual void redo() = 0;
    virtual void undo() = 0;
    virtual void skipForward(ObjectStream *stream);
    virtual void skipBack(ObjectStream *stream);
    virtual bool isVisibleToPlayers() const { return m_visible; }
    virtual bool startsEncounter() const { return false; }
    // Bytes of its record in the log.
    int size() const { return m_size; }
    int type() const { return m_type; }
    // False for one whose record has no end in the log.
    bool isWhole() const { return m_isWhole; }

protected:
    // Begins the record; the fields follow, and close() ends it.
    Event(EventType::Code type, const EventRecord &record);
    void close(const EventRecord &record, int endTag);
    static EventRecord reading(ObjectStream *stream) { return {stream, true}; }

    EventType::Code m_type;
    int m_size = 0;
    bool m_visible = false;
    bool m_isWhole = true;
    TrackerMember m_tracker {__LINE__, "event"};
};

// An event whose undo gives back the live state of each creature that it acts upon.
class ChangeStateEvent : public Event {
    Q_OBJECT

public:
    void undo() override;

protected:
    using Event::Event;

    // Takes the snapshots. The players see the event when the source or a target is a character.
    // A null target is left out.
    virtual void init(Creature *source, Creature *target);
    virtual void init(Creature *source, const QList<Creature *> &targets);

    // Null when no creature was given.
    Creature *firstTarget() const { return m_targets.first(); }
    // "Name -> ", or empty without a source.
    QString sourcePrefix() const;
    QString targetNames() const { return displayNames(m_targets.creatures()); }

    Creature *m_source = nullptr;
    CreatureSnapshots m_targets;
};

// --- creatures that may be null ---

// Empty for null.
QString displayNameOf(const Creature *creature);
// False for null.
bool isCharacter(const Creature *creature);
// "Name -> ", or empty for null.
QString arrowPrefix(const Creature *source);
QList<Creature *> withoutNull(const QList<Creature *> &creatures);
