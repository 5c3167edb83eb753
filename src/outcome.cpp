#include "outcome.h"

#include <QtGlobal>
#include <algorithm>

#include "saturated.h"

Health afterDamage(const Health &health, int damage)
{
    Health after = health;
    int left = damage;
    if (health.tempHP != 0) {
        const bool isUsedUp = health.tempHP <= damage;
        left = isUsedUp ? saturatedDifference(damage, health.tempHP) : 0;
        after.tempHP = isUsedUp ? 0 : saturatedDifference(health.tempHP, damage);
    }
    after.hp = saturatedDifference(health.hp, left);
    return after;
}

Health afterHealing(const Health &health, int healing, int surgesUsed)
{
    Health after = health;
    after.hp = saturatedSum(std::max(health.hp, 0), healing);
    after.surges = saturatedDifference(health.surges, surgesUsed);
    return after;
}

Health afterTempHP(const Health &health, int amount)
{
    Health after = health;
    after.tempHP = std::max(health.tempHP, amount);
    return after;
}

int afterNewMaximum(int value, int before, int maximum)
{
    return value == before ? maximum : std::min(value, maximum);
}

int surgeHealing(int surges, int surgeValue, int extra)
{
    return saturated(qint64(surges) * surgeValue + extra);
}
