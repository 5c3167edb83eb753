#include "restpreview.h"

#include <algorithm>
#include <utility>

#include "saturated.h"

RestPreview::~RestPreview()
{
    clear();
}

void RestPreview::show(Creature *creature, const Health &after, int actionPoints)
{
    const auto isIt = [creature](const Shown &shown) { return shown.creature == creature; };
    if (std::none_of(m_shown.cbegin(), m_shown.cend(), isIt))
        m_shown << Shown {creature, creature->isStable()};
    const Health before = real(creature);
    creature->setRestAdditions(saturatedDifference(after.hp, before.hp),
                               saturatedDifference(after.tempHP, before.tempHP),
                               saturatedDifference(after.surges, before.surges));
    creature->setRestAP(actionPoints);
}

Health RestPreview::real(const Creature *creature)
{
    return {saturatedDifference(creature->currHP(), creature->restHP()),
            saturatedDifference(creature->tempHP(), creature->restTempHP()),
            saturatedDifference(creature->currHS(), creature->restHS())};
}

void RestPreview::clear()
{
    for (const Shown &shown : std::exchange(m_shown, {})) {
        if (!shown.creature)
            continue;
        shown.creature->clearRestAdditions();
        // A preview that brings a stabilized creature up clears its stable mark.
        if (shown.creature->isStable() != shown.wasStable)
            shown.creature->setStable(shown.wasStable);
    }
}
