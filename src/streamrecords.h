// The sub-records that the events of the log share: creatures, lists, vitality, initiative.
#pragma once

#include <QList>

#include "creaturestate.h"
#include "effectedattributes.h"
#include "encounterentry.h"

class CreatureList;
class ObjectStream;
struct CreatureInit;

// A creature is written by its display name, null by an empty one. Reading makes a stand-in for a
// name that nobody has. Lists come back without nulls; a size that the bytes left can't hold counts
// as 0. Like any field, a list is searched forward for, so that fields of a later version in front
// of it are passed over. The vitality list, and the item list of readItemListIfNext(), come back
// empty when they aren't the next thing in the record, as in old logs.

void writeCreature(ObjectStream *stream, const Creature *creature);
Creature *readCreature(ObjectStream *stream);

void writeCreatureList(ObjectStream *stream, const QList<Creature *> &creatures);
QList<Creature *> readCreatureList(ObjectStream *stream);

void writeVitality(ObjectStream *stream, const CreatureVitality &vitality);
CreatureVitality readVitality(ObjectStream *stream);
void writeVitalityList(ObjectStream *stream, const QList<CreatureVitality> &list);
QList<CreatureVitality> readVitalityList(ObjectStream *stream);

void writeItemList(ObjectStream *stream, const QList<CreatureItem> &items);
QList<CreatureItem> readItemList(ObjectStream *stream);
QList<CreatureItem> readItemListIfNext(ObjectStream *stream);

void writeInitList(ObjectStream *stream, const QList<CreatureInit> &list);
QList<CreatureInit> readInitList(ObjectStream *stream);

// Without the list tags: a short rest brings its own count.
void writeRested(ObjectStream *stream, const QList<RestedCreature> &rested);
QList<RestedCreature> readRested(ObjectStream *stream);

void writeEntry(ObjectStream *stream, const EncounterEntry &entry);
EncounterEntry readEntry(ObjectStream *stream);

void writeAttributes(ObjectStream *stream, const EffectedAttributes &attributes);
EffectedAttributes readAttributes(ObjectStream *stream);
