#include "power.h"

void Power::setUsed(bool used)
{
    if (used && !isUsed())
        usageState = usageState == 0 ? 1 : 3;
    else if (!used && isUsed())
        ++usageState;
}
