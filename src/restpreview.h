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

    // Adds these to what the creature really has, in place of what was shown on it before.
    void show(Creature *creature, int hp, int tempHP, int surges, int actionPoints);
    void clear();

private:
    struct Shown {
        QPointer<Creature> creature;
        bool wasStable;
    };
    QList<Shown> m_shown;
};
