#include "encountersnapshots.h"

#include "creature.h"
#include "event.h"
#include "windowinterface.h"

EncounterSnapshot EncounterSnapshot::take()
{
    return {theEncounter->creatures(), theEncounter->position()};
}

void EncounterSnapshot::restore() const
{
    theEncounter->setOrder(order);
    theEncounter->setPosition(position);
}

QList<CreatureVitality> liveVitality(const CreatureList &creatures)
{
    QList<CreatureVitality> result;
    result.reserve(creatures.count());
    for (Creature *creature : creatures)
        result << creature->liveVitality();
    return result;
}

void setVitality(Creature *creature, const CreatureVitality &vitality)
{
    if (Replay::isRunning())
        creature->setVitalityNumbers(vitality);
    else
        creature->setVitality(vitality);
}

void applyVitality(const QList<CreatureVitality> &vitality)
{
    for (const CreatureVitality &each : vitality) {
        if (!each.creature)
            continue;
        // Numbers that stand already are no reason to check all creatures for outside changes.
        if (!(each == each.creature->liveVitality()))
            setVitality(each.creature, each);
        each.creature->setShadowVitality(each);
    }
}

VitalityBefore vitalityBefore(const CreatureList &creatures)
{
    VitalityBefore before {liveVitality(creatures), {}};
    before.shadows.reserve(creatures.count());
    for (Creature *creature : creatures)
        before.shadows << creature->shadowVitality();
    return before;
}

void restoreVitality(const VitalityBefore &before)
{
    applyVitality(before.live);
    // The shadows may differ from the live numbers: an extended rest leaves them so.
    for (const CreatureVitality &each : before.shadows)
        each.creature->setShadowVitality(each);
}

QList<CreatureItem> itemsOf(const CreatureList &creatures)
{
    QList<CreatureItem> result;
    result.reserve(creatures.count());
    for (Creature *creature : creatures)
        result << creature->item();
    return result;
}

void applyItems(const QList<CreatureItem> &items)
{
    for (const CreatureItem &item : items) {
        if (item.creature)
            item.creature->setItem(item);
    }
}

void restoreItems(const QList<CreatureItem> &items)
{
    for (auto item = items.crbegin(); item != items.crend(); ++item) {
        if (item->creature)
            item->creature->setItem(*item);
    }
}

void refreshTurnActions()
{
    windows().refreshEncounterActions();
    windows().refreshJumpInAction();
}
