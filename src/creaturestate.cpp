#include "creaturestate.h"

bool CreatureVitality::operator==(const CreatureVitality &other) const
{
    return initBonus == other.initBonus && maxHP == other.maxHP && currHP == other.currHP
        && maxHS == other.maxHS && currHS == other.currHS && hsValue == other.hsValue
        && initAP == other.initAP && currAP == other.currAP;
}
