// The base of all entries of the history, and what they share.
#pragma once

#include <QList>
#include <QObject>

#include "creaturestate.h"
#include "memorytracker.h"

class ObjectStream;

// Written or read once, redone and undone any number of times. A record holds only the event's
// arguments: what undo needs is captured from the state at construction, which is the same when a
// log is replayed in order.
class Event : public QObject {
    Q_OBJECT

public:
    ~Event() override;

    // The line of the history list.
    virtual QString text() const = 0;
    virtual void redo() = 0;
    virtual void undo() = 0;
    virtual void skipForward(ObjectStream *stream);
    virtual void skipBack(ObjectStream *stream);
    virtual bool isVisibleToPlayers() const { return m_visible; }
    virtual bool startsEncounter() const { return false; }
    // Bytes of its record in the log.
    int size() const { return m_size; }
    int type() const { return m_type; }

protected:
    explicit Event(int type) : m_type(type) { }

    int m_type;
    int m_size = 0;
    bool m_visible = false;
    TrackerMember m_tracker {__LINE__, "event"};
};

// The next event of the log, the caller's. Null at the end of the data, with `ok` as it was, and
// for an unknown type, with `ok` set to false.
Event *readEvent(ObjectStream *stream, bool *ok);
