// Shows in the live numbers of creatures what an open form would make of them.
#pragma once

#include <QList>
#include <QPointer>

#include "creature.h"

// Takes away what it shows when it is destroyed, so that no event sees it. A creature may go at any
// time.
class RestPreview {
public:
    RestPreview() = default;
    ~RestPreview();
    RestPreview(const RestPreview &) = delete;
    RestPreview &operator=(const RestPreview &) = delete;

    // Shows this health in place of what the creature has or showed before, and `actionPoints` more
    // than it has.
    void show(Creature *creature, const Health &after, int actionPoints);
    void clear();
    // What the creature has without any preview.
    static Health real(const Creature *creature);

private:
    struct Shown {
        QPointer<Creature> creature;
        bool wasStable;
    };
    QList<Shown> m_shown;
};
