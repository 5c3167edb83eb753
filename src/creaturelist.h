// A shared list of creatures that it doesn't own, with the orders of the fight.
#pragma once

#include <QList>
#include <QString>

#include "creaturestate.h"

class CreatureList {
public:
    CreatureList() = default;
    // Null creatures are left out: a list never holds one.
    explicit CreatureList(const QList<Creature *> &creatures);
    // Sorted by insertSorted(); only the creatures are taken.
    explicit CreatureList(const QList<CreatureItem> &items);
    explicit CreatureList(const QList<CreatureVitality> &vitality);
    virtual ~CreatureList() = default;
    CreatureList(const CreatureList &) = default;
    CreatureList(CreatureList &&) = default;
    CreatureList &operator=(const CreatureList &) = default;
    CreatureList &operator=(CreatureList &&) = default;

    enum Mode { Monsters = 1, Characters = 2, Both = 3 };

    int count() const { return int(m_creatures.size()); }
    int monsterCount() const;
    bool isEmpty() const { return m_creatures.isEmpty(); }
    // Null for an index out of range.
    Creature *at(int index) const;
    // First index, or -1.
    int indexOf(const Creature *creature) const;
    bool contains(const Creature *creature) const { return indexOf(creature) >= 0; }
    bool containsLivingCharacter() const;
    const QList<Creature *> &list() const { return m_creatures; }
    CreatureList filtered(int mode) const;
    // Display names joined with ", ".
    QString names() const;

    void setHidden(bool hidden);
    void removeAt(int index);
    void removeKind(bool isMonster);
    void clear() { m_creatures.clear(); }
    // Before the first entry that sorts after it: by group ignoring case, then by name in natural
    // order.
    void insertSorted(Creature *creature);
    // An index past the end appends, a negative one puts in front.
    void insertAt(int index, Creature *creature);
    void insertList(int index, const CreatureList &list);
    // Takes the creature out and puts it in again at `to`.
    void move(int from, int to);
    void swap(int a, int b);

    auto begin() const { return m_creatures.cbegin(); }
    auto end() const { return m_creatures.cend(); }
    bool operator==(const CreatureList &other) const { return m_creatures == other.m_creatures; }

private:
    QList<Creature *> m_creatures;
};

// Joined with ", "; null creatures are passed over.
QString displayNames(const QList<Creature *> &creatures);
