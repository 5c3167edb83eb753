// A list of creatures that it owns and finds by name: what the collections are made of.
#pragma once

#include <QHash>
#include <QList>
#include <memory>
#include <vector>

#include "creature.h"

// A name is looked up ignoring case and at the same cost in a library of any size. What counts as
// the name is the collection's choice. Libraries of one collection share its counters.
class CreatureLibrary {
public:
    using Key = QString (*)(const Creature &);

    CreatureLibrary(Key key, std::shared_ptr<ChangeCounters> counters);
    // Destroys all creatures.
    void clear(std::shared_ptr<ChangeCounters> counters);

    int count() const { return int(m_creatures.size()); }
    // Null for an index out of range.
    Creature *at(int index) const;
    int indexOf(const Creature *creature) const;
    QList<Creature *> list() const;
    // The first of that name but `except`, or null.
    Creature *find(const QString &key, const Creature *except = nullptr) const;
    // `key`, or the first of "key 2", "key 3" and so on that no creature but `except` has.
    QString uniqueKey(const QString &key, const Creature *except) const;
    // The same as a function, good while the library lives.
    UniqueName namer() const;
    // Before the first entry that sorts after `key`, passing over the one at `exceptIndex`.
    int insertionIndex(const QString &key, int exceptIndex = -1) const;

    // Takes the creature over in its place among sorted ones. Returns its index.
    int add(std::unique_ptr<Creature> creature);
    // Behind the last one: for an order of arrival, or with sort() at the end of a load.
    Creature *append(std::unique_ptr<Creature> creature);
    void sort();
    std::unique_ptr<Creature> take(int index);
    // Puts the entry where its changed name belongs.
    void resort(Creature *creature);
    // Keeps only what `stays` accepts.
    void removeUnless(bool (*stays)(const Creature &));

private:
    // By case-folded name; creatures of the same one in the order of the list.
    using Index = QHash<QString, QList<Creature *>>;
    void adopt(Creature *creature);
    const Index &index() const;

    Key m_key;
    std::shared_ptr<ChangeCounters> m_counters;
    std::vector<std::unique_ptr<Creature>> m_creatures;
    mutable Index m_index;
    mutable int m_indexedChanges = 0;
    // Below these numbers every name made from the stem is taken, as long as none is given up.
    mutable QHash<QString, int> m_nextNumbers;
};

// Writes a new or changed creature, which then has no flag; one that can't be written keeps them.
void saveChanges(Creature &creature);
// Removes the creature's file. True too when there is none.
bool removeCreatureFile(const Creature &creature, bool isMonster);
// Takes all three flags off, and so out of the counters.
void clearFlags(Creature &creature);
