#include "streamrecords.h"

#include "creature.h"
#include "encounter.h"
#include "findcreature.h"
#include "objectstream.h"

namespace {

// A field takes a tag and a length at least, and each item of a list has several.
constexpr int LeastItemSize = 3;

int readCount(ObjectStream *stream, int tag)
{
    const int count = stream->readInt(tag);
    // By its own record, not by the file: or the same size would be believed once the log has
    // grown.
    return count > 0 && stream->recordHolds(qint64(count) * LeastItemSize) ? count : 0;
}

// Items that `read` gives; those that `isUsable` refuses are dropped.
template <typename Item, typename Read, typename IsUsable>
QList<Item> readItems(ObjectStream *stream, int count, Read read, IsUsable isUsable)
{
    QList<Item> result;
    for (int i = 0; i < count; ++i) {
        Item item = read(stream);
        if (isUsable(item))
            result << item;
    }
    return result;
}

template <typename Item, typename Read, typename IsUsable>
QList<Item> readList(ObjectStream *stream, int sizeTag, int endTag, Read read, IsUsable isUsable)
{
    QList<Item> result = readItems<Item>(stream, readCount(stream, sizeTag), read, isUsable);
    stream->readTo(endTag);
    return result;
}

// Empty when the list isn't the next thing in the record.
template <typename Item, typename Read, typename IsUsable>
QList<Item> readListIfNext(ObjectStream *stream, int sizeTag, int endTag, Read read,
                           IsUsable isUsable)
{
    if (!stream->nextIs(sizeTag))
        return {};
    return readList<Item>(stream, sizeTag, endTag, read, isUsable);
}

struct VitalityField {
    int tag;
    int CreatureVitality::*value;
};

// In the order of the record.
constexpr VitalityField vitalityFields[] = {
    {ID_CREATURE_VITALITY_INIT_BONUS, &CreatureVitality::initBonus},
    {ID_CREATURE_VITALITY_MAX_HP, &CreatureVitality::maxHP},
    {ID_CREATURE_VITALITY_CURR_HP, &CreatureVitality::currHP},
    {ID_CREATURE_VITALITY_MAX_HS, &CreatureVitality::maxHS},
    {ID_CREATURE_VITALITY_CURR_HS, &CreatureVitality::currHS},
    {ID_CREATURE_VITALITY_HS_VALUE, &CreatureVitality::hsValue},
    {ID_CREATURE_VITALITY_INIT_AP, &CreatureVitality::initAP},
    {ID_CREATURE_VITALITY_CURR_AP, &CreatureVitality::currAP},
};

constexpr auto hasCreature = [](const auto &item) { return item.creature != nullptr; };

CreatureItem readItem(ObjectStream *stream)
{
    CreatureItem item;
    item.creature = readCreature(stream);
    item.roll = stream->readInt(ID_CREATURE_ITEM_ROLL);
    item.random = stream->readInt(ID_CREATURE_ITEM_RANDOM);
    stream->readTo(ID_CREATURE_ITEM_END);
    return item;
}

CreatureInit readInit(ObjectStream *stream)
{
    CreatureInit init;
    init.name = stream->readString(ID_CREATURE_INIT_NAME);
    init.roll = stream->readInt(ID_CREATURE_INIT_ROLL);
    init.random = stream->readInt(ID_CREATURE_INIT_RANDOM);
    stream->readTo(ID_CREATURE_INIT_END);
    return init;
}

RestedCreature readRestedCreature(ObjectStream *stream)
{
    RestedCreature rested;
    rested.creature = readCreature(stream);
    rested.usedHS = stream->readInt(ID_RESTED_CREATURE_USED_HS);
    rested.addedHP = stream->readInt(ID_RESTED_CREATURE_ADDED_HP);
    rested.addedAP = stream->readInt(ID_RESTED_CREATURE_ADDED_AP);
    stream->readTo(ID_RESTED_CREATURE_END);
    return rested;
}

} // namespace

void writeCreature(ObjectStream *stream, const Creature *creature)
{
    stream->writeString(ID_CREATURE_NAME, creature ? creature->displayName() : QString());
    stream->writeEnd(ID_CREATURE_END);
}

Creature *readCreature(ObjectStream *stream)
{
    const QString name = stream->readString(ID_CREATURE_NAME);
    stream->readTo(ID_CREATURE_END);
    return findCreature(name, true);
}

void writeCreatureList(ObjectStream *stream, const QList<Creature *> &creatures)
{
    stream->writeInt(ID_CREATURE_LIST_SIZE, int(creatures.size()));
    for (const Creature *creature : creatures)
        writeCreature(stream, creature);
    stream->writeEnd(ID_CREATURE_LIST_END);
}

QList<Creature *> readCreatureList(ObjectStream *stream)
{
    const int count = readCount(stream, ID_CREATURE_LIST_SIZE);
    QList<Creature *> result = readItems<Creature *>(
        stream, count, readCreature, [](const Creature *creature) { return creature != nullptr; });
    stream->readTo(ID_CREATURE_LIST_END);
    return result;
}

void writeVitality(ObjectStream *stream, const CreatureVitality &vitality)
{
    writeCreature(stream, vitality.creature);
    for (const VitalityField &field : vitalityFields)
        stream->writeInt(field.tag, vitality.*field.value);
    stream->writeEnd(ID_CREATURE_VITALITY_END);
}

CreatureVitality readVitality(ObjectStream *stream)
{
    CreatureVitality vitality;
    vitality.creature = readCreature(stream);
    for (const VitalityField &field : vitalityFields)
        vitality.*field.value = stream->readInt(field.tag);
    stream->readTo(ID_CREATURE_VITALITY_END);
    return vitality;
}

void writeVitalityList(ObjectStream *stream, const QList<CreatureVitality> &list)
{
    stream->writeInt(ID_CREATURE_VITALITY_LIST_SIZE, int(list.size()));
    for (const CreatureVitality &vitality : list)
        writeVitality(stream, vitality);
    stream->writeEnd(ID_CREATURE_VITALITY_LIST_END);
}

QList<CreatureVitality> readVitalityList(ObjectStream *stream)
{
    return readListIfNext<CreatureVitality>(stream, ID_CREATURE_VITALITY_LIST_SIZE,
                                            ID_CREATURE_VITALITY_LIST_END, readVitality,
                                            hasCreature);
}

void writeItemList(ObjectStream *stream, const QList<CreatureItem> &items)
{
    stream->writeInt(ID_CREATURE_ITEM_LIST_SIZE, int(items.size()));
    for (const CreatureItem &item : items) {
        writeCreature(stream, item.creature);
        stream->writeInt(ID_CREATURE_ITEM_ROLL, item.roll);
        stream->writeInt(ID_CREATURE_ITEM_RANDOM, item.random);
        stream->writeEnd(ID_CREATURE_ITEM_END);
    }
    stream->writeEnd(ID_CREATURE_ITEM_LIST_END);
}

QList<CreatureItem> readItemList(ObjectStream *stream)
{
    return readList<CreatureItem>(stream, ID_CREATURE_ITEM_LIST_SIZE, ID_CREATURE_ITEM_LIST_END,
                                  readItem, hasCreature);
}

QList<CreatureItem> readItemListIfNext(ObjectStream *stream)
{
    return readListIfNext<CreatureItem>(stream, ID_CREATURE_ITEM_LIST_SIZE,
                                        ID_CREATURE_ITEM_LIST_END, readItem, hasCreature);
}

void writeInitList(ObjectStream *stream, const QList<CreatureInit> &list)
{
    stream->writeInt(ID_CREATURE_INIT_LIST_SIZE, int(list.size()));
    for (const CreatureInit &init : list) {
        stream->writeString(ID_CREATURE_INIT_NAME, init.name);
        stream->writeInt(ID_CREATURE_INIT_ROLL, init.roll);
        stream->writeInt(ID_CREATURE_INIT_RANDOM, init.random);
        stream->writeEnd(ID_CREATURE_INIT_END);
    }
    stream->writeEnd(ID_CREATURE_INIT_LIST_END);
}

QList<CreatureInit> readInitList(ObjectStream *stream)
{
    return readList<CreatureInit>(stream, ID_CREATURE_INIT_LIST_SIZE, ID_CREATURE_INIT_LIST_END,
                                  readInit,
                                  [](const CreatureInit &init) { return !init.name.isEmpty(); });
}

void writeRested(ObjectStream *stream, const QList<RestedCreature> &rested)
{
    stream->writeInt(ID_SR_ACTION_EVENT_COUNT, int(rested.size()));
    for (const RestedCreature &each : rested) {
        writeCreature(stream, each.creature);
        stream->writeInt(ID_RESTED_CREATURE_USED_HS, each.usedHS);
        stream->writeInt(ID_RESTED_CREATURE_ADDED_HP, each.addedHP);
        stream->writeInt(ID_RESTED_CREATURE_ADDED_AP, each.addedAP);
        stream->writeEnd(ID_RESTED_CREATURE_END);
    }
}

QList<RestedCreature> readRested(ObjectStream *stream)
{
    const int count = readCount(stream, ID_SR_ACTION_EVENT_COUNT);
    return readItems<RestedCreature>(stream, count, readRestedCreature, hasCreature);
}

void writeEntry(ObjectStream *stream, const EncounterEntry &entry)
{
    stream->writeString(ID_ENCOUNTER_ENTRY_FILE_NAME, entry.fileName);
    stream->writeString(ID_ENCOUNTER_ENTRY_NAME, entry.name);
    stream->writeString(ID_ENCOUNTER_ENTRY_DESC, entry.description);
    stream->writeInt(ID_ENCOUNTER_ENTRY_LEVEL, entry.level);
    stream->writeInt(ID_ENCOUNTER_ENTRY_XP, entry.xp);
    stream->writeString(ID_ENCOUNTER_ENTRY_ADVENTURE, entry.adventure);
    stream->writeEnd(ID_ENCOUNTER_ENTRY_END);
}

EncounterEntry readEntry(ObjectStream *stream)
{
    EncounterEntry entry;
    entry.fileName = stream->readString(ID_ENCOUNTER_ENTRY_FILE_NAME);
    entry.name = stream->readString(ID_ENCOUNTER_ENTRY_NAME);
    entry.description = stream->readString(ID_ENCOUNTER_ENTRY_DESC);
    entry.level = stream->readInt(ID_ENCOUNTER_ENTRY_LEVEL);
    entry.xp = stream->readInt(ID_ENCOUNTER_ENTRY_XP);
    // Old logs lack it.
    if (stream->nextIs(ID_ENCOUNTER_ENTRY_ADVENTURE))
        entry.adventure = stream->readString(ID_ENCOUNTER_ENTRY_ADVENTURE);
    stream->readTo(ID_ENCOUNTER_ENTRY_END);
    return entry;
}

void writeAttributes(ObjectStream *stream, const EffectedAttributes &attributes)
{
    stream->writeInt(ID_EFFECTED_ATTR_FLAGS, int(attributes.flags()));
    stream->writeEnd(ID_EFFECTED_ATTR_END);
}

EffectedAttributes readAttributes(ObjectStream *stream)
{
    const auto flags = static_cast<unsigned int>(stream->readInt(ID_EFFECTED_ATTR_FLAGS));
    stream->readTo(ID_EFFECTED_ATTR_END);
    return EffectedAttributes::fromFlags(flags);
}
