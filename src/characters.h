// The library's player characters, one for each file of "Characters". In a fight they stand
// themselves, not as clones.
#pragma once

#include <QList>
#include <QObject>
#include <memory>
#include <vector>

#include "creaturelibrary.h"
#include "memorytracker.h"
#include "progress.h"

// Owns its characters, those that the user deleted included: they live as long as the fight or the
// log can name them.
class Characters : public QObject {
    Q_OBJECT

public:
    explicit Characters(QObject *parent = nullptr);
    ~Characters() override;

    // Sorted by name ignoring case; stand-ins for missing characters are not among them.
    int count() const;
    Creature *at(int index) const;
    int indexOf(const Creature *creature) const;
    // Characters whose deletion isn't saved are found too: their names stay taken.
    Creature *find(const QString &name, const Creature *except = nullptr) const;
    // `name`, or with the first number from 2 that no character but `except` has.
    QString uniqueName(const QString &name, const Creature *except = nullptr) const;
    int insertionIndex(const QString &name, int exceptIndex = -1) const;
    // Takes the character over. Returns its index. The flags of a new one are set behind this, or
    // they would not be counted.
    int add(std::unique_ptr<Creature> creature);
    // With `free` the character moves to the deleted ones; without, the caller gets it. A deletion
    // that saveAll() carries out and revertAll() takes back has isDeleted() set.
    std::unique_ptr<Creature> remove(int index, bool free);
    QString newName() const;
    // A new character, ready for the Character Creator; neither added nor flagged.
    std::unique_ptr<Creature> newCharacter() const;
    const ChangeCounters &counters() const;

    // The character of that name, deleted and missing ones included. With `create` a stand-in with
    // isMissing() set is made for a name that nobody has.
    Creature *ensureCharacter(const QString &name, bool create);
    // The stand-in takes the character's place in the library, for a rename that joined the two.
    // The character lives on like a deleted one, but no name finds it.
    void replaceByStandIn(Creature *character, Creature *standIn);
    // All characters and all stand-ins.
    QList<Creature *> all() const;
    // The running state of all characters starts anew; stand-ins go, and so do deleted ones whose
    // deletion is saved. For when nothing names them any more.
    void resetForEncounter();

    void clear();
    void replaceBy(Characters &other);
    static int fileCount(const QString &dataFolder);
    LoadResult load(const QString &dataFolder, const QString &displayFolder, Progress &progress);
    // Writes what is new or changed and removes the files of deleted entries. What can't be written
    // keeps its flags.
    void saveAll();
    // Back to the saved texts, deleted characters included.
    void revertAll();

Q_SIGNALS:
    void doCharactersUpdated();

private:
    Creature *makeStandIn(const QString &name);
    void removeDeletedFiles();
    void restoreDeleted();

    std::shared_ptr<ChangeCounters> m_counters;
    CreatureLibrary m_entries;
    CreatureLibrary m_deleted;
    // With counters of their own: they have no file that could be unsaved.
    CreatureLibrary m_standIns;
    std::vector<std::unique_ptr<Creature>> m_retired; // no name finds them any more
    TrackerMember m_tracker {__LINE__, "characters"};
};

// The one of the running program. Null before it is made and after shut-down.
extern Characters *theCharacters;
