#include "encountercommands.h"

#include "appendevent.h"
#include "creature.h"
#include "creaturelist.h"
#include "effectevents.h"
#include "vitalityevents.h"
#include "windowinterface.h"

namespace {

bool removeEffects(Creature *creature)
{
    const QList<Effect *> effects = creature->effects();
    for (Effect *effect : effects) {
        if (!appendEvent<RemoveOnGoingEvent>(creature, effect))
            return false;
    }
    return true;
}

bool renewPowers(Creature *creature)
{
    for (int i = 0; i < creature->powers().size(); ++i) {
        constexpr int unused = 1;
        Power *power = creature->powerAt(i);
        if (power && power->isUsed()
            && !appendEvent<PowerUsageChangedEvent>(creature, power, unused))
            return false;
    }
    return true;
}

} // namespace

bool takeExtendedRest()
{
    if (!theHistory->getStream())
        return false;
    for (Creature *character : livingCharacters())
        character->refreshIfLinked();
    windows().refreshCharacterList();
    // No creatures stand for the whole party.
    return appendEvent<ExtendedRestEvent>(QList<Creature *>());
}

void makeFresh(const CreatureList &arrivals)
{
    QList<Creature *> monsters;
    QList<Creature *> tired;
    for (Creature *creature : arrivals) {
        if (!creature || !creature->isMonster())
            continue;
        monsters << creature;
        if (!creature->isRested())
            tired << creature;
    }
    if (!tired.isEmpty() && !appendEvent<ExtendedRestEvent>(tired))
        return;
    for (Creature *monster : std::as_const(monsters)) {
        if (!removeEffects(monster) || !renewPowers(monster))
            return;
    }
}
