// What a blow, a healing and temporary hit points come to, as pure functions: the rules apply them,
// and open forms show beforehand what they give. Sums stop at the ends of int. Nothing is capped at
// a creature's maximum: the rules do that, and a preview shows what would go to waste.
#pragma once

struct Health {
    int hp = 0;
    int tempHP = 0;
    int surges = 0;
};

// Temporary hit points go first.
Health afterDamage(const Health &health, int damage);
// Healing counts from 0 hit points. Negative `surgesUsed` adds surges.
Health afterHealing(const Health &health, int healing, int surgesUsed);
// They only rise: the higher of the old and the new counts.
Health afterTempHP(const Health &health, int amount);
// What a current value comes to when its maximum, so far `before`, is edited: who was whole stays
// whole, and nobody has more than there is.
int afterNewMaximum(int value, int before, int maximum);
// Hit points that so many surges give, with `extra` on top.
int surgeHealing(int surges, int surgeValue, int extra);
