// A record of the log as a list of fields, one list for writing and for reading.
#pragma once

#include <QList>

#include "creaturestate.h"
#include "effectedattributes.h"
#include "encounterentry.h"
#include "streamtags.h"

class ObjectStream;
struct CreatureInit;

// An event names its fields in their order. Each call writes the value, or puts in its place what
// the log has: 0, empty or null for a field that isn't there. A field is searched forward for, so
// that those of a later version in front of it are passed over.
//
// A creature is written by its display name, null by an empty one. Reading makes a stand-in for a
// name that nobody has. Lists come back without nulls; a size that the bytes left can't hold counts
// as 0.
class EventRecord {
public:
    // A stream alone is one to write the record to. With `isReading` the type has been read
    // already.
    EventRecord(ObjectStream *stream, bool isReading = false)
        : m_stream(stream), m_isReading(isReading)
    {
    }
    bool isReading() const { return m_isReading; }

    void begin(int type) const;
    void field(int tag, int &value) const;
    void field(int tag, bool &value) const;
    void field(int tag, QString &text) const;
    // The display name alone.
    void field(int tag, Creature *&creature) const;

    // Sub-records, whose tags are their own.
    void field(Creature *&creature) const;
    void field(QList<Creature *> &creatures) const;
    void field(QList<CreatureItem> &items) const;
    void field(QList<CreatureInit> &inits) const;
    // Has no end tag: the end of the short rest is its end.
    void field(QList<RestedCreature> &rested) const;
    void field(CreatureVitality &vitality) const;
    // Empty when it isn't the next thing in the record, as in old logs.
    void field(QList<CreatureVitality> &list) const;
    void field(EncounterEntry &entry) const;
    void field(EffectedAttributes &attributes) const;

    // Whether an optional field follows: the next one in the log has this tag, or `isWritten`.
    bool has(int tag, bool isWritten = true) const;
    // False when the log has no such tag ahead.
    bool end(int tag) const;
    // Back to the start of the record. Its size in bytes.
    int finish() const;

private:
    void field(CreatureItem &item) const;
    void field(CreatureInit &init) const;
    void field(RestedCreature &rested) const;
    template <typename Item>
    void list(int sizeTag, QList<Item> &items) const;

    ObjectStream *m_stream;
    bool m_isReading;
};
