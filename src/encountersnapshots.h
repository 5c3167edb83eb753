// What an event keeps of the encounter and its creatures, and how it puts that back: the order, the
// initiative, the vitality.
#pragma once

#include <QList>

#include "creaturelist.h"
#include "encounter.h"

// The order of the encounter and the position in it, for events that change both.
struct EncounterSnapshot {
    CreatureList order;
    EncounterPosition position;

    static EncounterSnapshot take();
    void restore() const;
};

QList<CreatureVitality> liveVitality(const CreatureList &creatures);
// The eight live numbers. A replay leaves the text of the creature as its file has it.
void setVitality(Creature *creature, const CreatureVitality &vitality);
// Live fields and shadows, so that it doesn't count as a change made outside the history.
void applyVitality(const QList<CreatureVitality> &vitality);
// What undo puts back: the numbers, and what the history knew of them.
struct VitalityBefore {
    QList<CreatureVitality> live;
    QList<CreatureVitality> shadows;
};
VitalityBefore vitalityBefore(const CreatureList &creatures);
void restoreVitality(const VitalityBefore &before);
QList<CreatureItem> itemsOf(const CreatureList &creatures);
void applyItems(const QList<CreatureItem> &items);
// Backwards: of a creature that was rolled twice the first entry is the older.
void restoreItems(const QList<CreatureItem> &items);

// For after a creature has left the order or come back.
void refreshTurnActions();
