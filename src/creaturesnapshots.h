// Creatures with the state that each had at one moment.
#pragma once

#include <QList>
#include <memory>

#include "creaturestate.h"

// What an event keeps of those it acts upon. A long log holds hundreds of thousands of these, so
// all lies packed in one piece of memory: a quarter of what two lists took.
class CreatureSnapshots {
public:
    CreatureSnapshots() = default;
    // As they are now, none of them null.
    explicit CreatureSnapshots(const QList<Creature *> &creatures);
    CreatureSnapshots(const QList<Creature *> &creatures, const QList<CreatureState> &states);

    int count() const { return m_count; }
    // Null when there is none.
    Creature *first() const { return m_count > 0 ? m_block[0] : nullptr; }
    Creature *const *begin() const { return m_block.get(); }
    Creature *const *end() const { return m_block.get() + m_count; }
    QList<Creature *> creatures() const { return {begin(), end()}; }
    QList<CreatureState> states() const;
    // Gives each its state back.
    void restore() const;

private:
    std::unique_ptr<Creature *[]> m_block; // the creatures, and behind them the states as bytes
    int m_count = 0;
};
