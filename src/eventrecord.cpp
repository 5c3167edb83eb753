#include "eventrecord.h"

#include "creature.h"
#include "encounter.h"
#include "findcreature.h"
#include "objectstream.h"

namespace {

// A field takes a tag and a length at least, and each item of a list has several.
constexpr int LeastItemSize = 3;

// Items of a list that aren't kept when it is read.
bool isNothing(Creature *creature)
{
    return !creature;
}

bool isNothing(const CreatureInit &init)
{
    return init.name.isEmpty();
}

template <typename Item>
bool isNothing(const Item &item)
{
    return !item.creature;
}

} // namespace

void EventRecord::begin(int type) const
{
    if (m_isReading)
        return;
    m_stream->markRecord();
    m_stream->writeInt(ID_EVENT_TYPE, type);
}

bool EventRecord::has(int tag, bool isWritten) const
{
    return m_isReading ? m_stream->nextIs(tag) : isWritten;
}

bool EventRecord::end(int tag) const
{
    if (m_isReading)
        return m_stream->readTo(tag);
    m_stream->writeEnd(tag);
    return true;
}

int EventRecord::finish() const
{
    return m_stream->finishRecord();
}

template <typename Item>
void EventRecord::list(int sizeTag, QList<Item> &items) const
{
    int count = int(items.size());
    field(sizeTag, count);
    if (!m_isReading) {
        for (Item item : std::as_const(items))
            field(item);
        return;
    }
    items.clear();
    // Compared with its own record, not with the file: otherwise the same wrong size would pass
    // once the log has grown.
    if (!m_stream->recordHolds(qint64(count) * LeastItemSize))
        return;
    for (int i = 0; i < count; ++i) {
        Item item {};
        field(item);
        if (!isNothing(item))
            items << item;
    }
}

// --- single values ---

void EventRecord::field(int tag, int &value) const
{
    if (m_isReading)
        value = m_stream->readInt(tag);
    else
        m_stream->writeInt(tag, value);
}

void EventRecord::field(int tag, bool &value) const
{
    int number = value ? 1 : 0;
    field(tag, number);
    value = number != 0;
}

void EventRecord::field(int tag, QString &text) const
{
    if (m_isReading)
        text = m_stream->readString(tag);
    else
        m_stream->writeString(tag, text);
}

void EventRecord::field(int tag, Creature *&creature) const
{
    QString name = creature ? creature->displayName() : QString();
    field(tag, name);
    if (m_isReading)
        creature = findCreature(name, true);
}

// --- sub-records ---

void EventRecord::field(Creature *&creature) const
{
    QString name = creature ? creature->displayName() : QString();
    field(ID_CREATURE_NAME, name);
    end(ID_CREATURE_END);
    if (m_isReading)
        creature = findCreature(name, true);
}

void EventRecord::field(QList<Creature *> &creatures) const
{
    list(ID_CREATURE_LIST_SIZE, creatures);
    end(ID_CREATURE_LIST_END);
}

void EventRecord::field(CreatureItem &item) const
{
    field(item.creature);
    field(ID_CREATURE_ITEM_ROLL, item.roll);
    field(ID_CREATURE_ITEM_RANDOM, item.random);
    end(ID_CREATURE_ITEM_END);
}

void EventRecord::field(QList<CreatureItem> &items) const
{
    list(ID_CREATURE_ITEM_LIST_SIZE, items);
    end(ID_CREATURE_ITEM_LIST_END);
}

void EventRecord::field(CreatureInit &init) const
{
    field(ID_CREATURE_INIT_NAME, init.name);
    field(ID_CREATURE_INIT_ROLL, init.roll);
    field(ID_CREATURE_INIT_RANDOM, init.random);
    end(ID_CREATURE_INIT_END);
}

void EventRecord::field(QList<CreatureInit> &inits) const
{
    list(ID_CREATURE_INIT_LIST_SIZE, inits);
    end(ID_CREATURE_INIT_LIST_END);
}

void EventRecord::field(RestedCreature &rested) const
{
    field(rested.creature);
    field(ID_RESTED_CREATURE_USED_HS, rested.usedHS);
    field(ID_RESTED_CREATURE_ADDED_HP, rested.addedHP);
    field(ID_RESTED_CREATURE_ADDED_AP, rested.addedAP);
    end(ID_RESTED_CREATURE_END);
}

void EventRecord::field(QList<RestedCreature> &rested) const
{
    list(ID_SR_ACTION_EVENT_COUNT, rested);
}

void EventRecord::field(CreatureVitality &vitality) const
{
    field(vitality.creature);
    field(ID_CREATURE_VITALITY_INIT_BONUS, vitality.initBonus);
    field(ID_CREATURE_VITALITY_MAX_HP, vitality.maxHP);
    field(ID_CREATURE_VITALITY_CURR_HP, vitality.currHP);
    field(ID_CREATURE_VITALITY_MAX_HS, vitality.maxHS);
    field(ID_CREATURE_VITALITY_CURR_HS, vitality.currHS);
    field(ID_CREATURE_VITALITY_HS_VALUE, vitality.hsValue);
    field(ID_CREATURE_VITALITY_INIT_AP, vitality.initAP);
    field(ID_CREATURE_VITALITY_CURR_AP, vitality.currAP);
    end(ID_CREATURE_VITALITY_END);
}

void EventRecord::field(QList<CreatureVitality> &vitality) const
{
    if (!has(ID_CREATURE_VITALITY_LIST_SIZE)) {
        vitality.clear();
        return;
    }
    list(ID_CREATURE_VITALITY_LIST_SIZE, vitality);
    end(ID_CREATURE_VITALITY_LIST_END);
}

void EventRecord::field(EncounterEntry &entry) const
{
    field(ID_ENCOUNTER_ENTRY_FILE_NAME, entry.fileName);
    field(ID_ENCOUNTER_ENTRY_NAME, entry.name);
    field(ID_ENCOUNTER_ENTRY_DESC, entry.description);
    field(ID_ENCOUNTER_ENTRY_LEVEL, entry.level);
    field(ID_ENCOUNTER_ENTRY_XP, entry.xp);
    // Old logs lack it.
    if (has(ID_ENCOUNTER_ENTRY_ADVENTURE))
        field(ID_ENCOUNTER_ENTRY_ADVENTURE, entry.adventure);
    end(ID_ENCOUNTER_ENTRY_END);
}

void EventRecord::field(EffectedAttributes &attributes) const
{
    int flags = int(attributes.flags());
    field(ID_EFFECTED_ATTR_FLAGS, flags);
    end(ID_EFFECTED_ATTR_END);
    attributes = EffectedAttributes::fromFlags(static_cast<unsigned int>(flags));
}
