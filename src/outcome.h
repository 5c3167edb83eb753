// What a blow or a healing comes to, for the rules and for the previews of open dialogs alike.
#pragma once

#include <algorithm>

#include "saturated.h"

// Healing counts from 0 hit points. Not capped at the creature's maximum.
inline int healedHP(int hp, int healing)
{
    return saturatedSum(std::max(hp, 0), healing);
}
