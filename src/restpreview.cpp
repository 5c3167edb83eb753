#include "restpreview.h"

#include <algorithm>
#include <utility>

RestPreview::~RestPreview()
{
    clear();
}

void RestPreview::show(Creature *creature, int hp, int tempHP, int surges, int actionPoints)
{
    const auto isIt = [creature](const Shown &shown) { return shown.creature == creature; };
    if (std::none_of(m_shown.cbegin(), m_shown.cend(), isIt))
        m_shown << Shown {creature, creature->isStable()};
    creature->setRestAdditions(hp, tempHP, surges);
    creature->setRestAP(actionPoints);
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
