// The one running encounter: who is in it, in which order, the round and the current creature.
#pragma once

#include <QMap>
#include <QObject>
#include <QSet>

#include "creaturelist.h"
#include "encounterentry.h"
#include "memorytracker.h"

struct EncounterPosition {
    int round = 0;
    int currentIndex = -1;
    QSet<Creature *> fallen;

    bool operator==(const EncounterPosition &) const = default;
};

// One row of the initiative dialog's result: a creature's display name, or a monster group's name.
struct CreatureInit {
    QString name;
    int roll = 0;
    int random = 0;
};

// The order built from the initiative lists, with what each creature had before.
struct InitiativeOrder {
    CreatureList order;
    QList<CreatureItem> oldItems;
    QList<CreatureItem> newItems;
};

// What the players may know of the order.
struct VisibleCreatures {
    QList<Creature *> rows;
    QMap<int, Creature *> kills; // by lastHitOrder
};

// Knows nothing of the rules of a turn: events call the operations below, commands never do.
class Encounter : public QObject {
    Q_OBJECT

public:
    explicit Encounter(QObject *parent = nullptr);

    const QString &name() const { return m_entry.name; }
    const QString &description() const { return m_entry.description; }
    int level() const { return m_entry.level; }
    int xp() const { return m_entry.xp; }
    int round() const { return m_round; }
    int count() const { return m_creatures.count(); }
    int monsterCount() const { return m_creatures.monsterCount(); }
    Creature *at(int index) const { return m_creatures.at(index); }
    int indexOf(const Creature *creature) const { return m_creatures.indexOf(creature); }
    bool contains(const Creature *creature) const { return indexOf(creature) >= 0; }
    // -1 while no encounter runs.
    int currentIndex() const { return m_currentIndex; }
    Creature *current() const { return m_creatures.at(m_currentIndex); }
    int nextIndex() const;
    Creature *next() const { return m_creatures.at(nextIndex()); }
    bool isRunning() const { return m_currentIndex != -1; }
    const CreatureList &creatures() const { return m_creatures; }
    CreatureList monsters() const { return m_creatures.filtered(CreatureList::Monsters); }
    CreatureList characters() const { return m_creatures.filtered(CreatureList::Characters); }
    bool hasLivingCharacter() const { return m_creatures.containsLivingCharacter(); }
    const QSet<Creature *> &fallen() const { return m_fallen; }
    EncounterPosition position() const;
    EncounterPosition nextPosition() const;
    VisibleCreatures playersView() const;
    // The encounter's own texts as an entry without a file.
    EncounterEntry entry() const { return m_entry; }

    // Where a moved creature lands next to the current one.
    static int indexBeforeCurrent(int from, int current);
    static int indexAfterCurrent(int from, int current);
    // The order that the two lists give the present roster. Changes no creature: the caller applies
    // the new items.
    InitiativeOrder buildOrder(const QList<CreatureInit> &characters,
                               const QList<CreatureInit> &monsters) const;

    void setOrder(const CreatureList &order);
    void setPosition(const EncounterPosition &position);
    void setCurrentIndex(int index);
    void setEntry(const EncounterEntry &entry);
    // Where the current creature goes, the one before it becomes current.
    void remove(const QList<Creature *> &creatures);
    void remove(Creature *creature);
    void insert(int index, Creature *creature);
    void insertSorted(Creature *creature);
    void move(int from, int to);
    // Swaps each creature with whoever stands `delta` places on, around the ends.
    void adjustInitiative(const QList<Creature *> &creatures, int delta);
    void reset();
    // Something may have been changed outside the history: the next command logs it.
    void markVitalityStale(bool stale = true) { m_vitalityStale = stale; }
    bool isVitalityStale() const { return m_vitalityStale; }
    // Emits the count signal although only the selection changed.
    void notifyCountChanged() { Q_EMIT doCreatureCountChanged(); }

Q_SIGNALS:
    void doCreatureCountChanged();
    void doCurrentCreatureChanged();

private:
    void removeOne(Creature *creature);
    void updateRoundText() const;
    void updateEncounterText() const;

    EncounterEntry m_entry;
    int m_round = 0;
    int m_currentIndex = -1;
    QSet<Creature *> m_fallen;
    CreatureList m_creatures;
    bool m_vitalityStale = false;
    TrackerMember m_tracker {__LINE__, "encounter"};
};

// The one of the running program. Null before it is made and after shut-down.
extern Encounter *theEncounter;
