// The library's player characters, one for each file of "Characters". In a fight they stand
// themselves, not as clones.
#pragma once

#include <QList>
#include <QObject>
#include <memory>
#include <vector>

#include "collection.h"
#include "creature.h"
#include "memorytracker.h"
#include "revertednames.h"

// Owns its characters, those that the user deleted included: they live as long as the fight or the
// log can name them.
class Characters : public QObject, public Collection<Creature> {
    Q_OBJECT

public:
    explicit Characters(QObject *parent = nullptr);
    ~Characters() override;

    // Stand-ins for missing characters are not among the entries.
    // Characters whose deletion isn't saved are found too: their names stay taken.
    Creature *find(const QString &name, const Creature *except = nullptr) const;
    // The name of a stand-in is free. A name that a character's text states is taken, even while a
    // step back through the history has given the character an older one.
    NameState nameState(const QString &name, const Creature *except = nullptr) const;
    // `name`, or with the first number from 2 that no character but `except` has.
    QString uniqueName(const QString &name, const Creature *except = nullptr) const;
    // With `free` the character moves to the deleted ones; without, the caller becomes its owner. A
    // deletion that can still be taken back isn't done by this: setDeleted() marks it until
    // saveAll() or revertAll().
    std::unique_ptr<Creature> remove(int index, bool free);
    QString newName() const;
    // A new character, ready for the Character Creator; neither added nor flagged.
    std::unique_ptr<Creature> newCharacter() const;

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

    void clear() override;
    // Takes everything out of `other`.
    void replaceBy(Characters &other);
    static int fileCount(const QString &dataFolder);
    void saveAll() override;
    // Deleted characters come back too.
    void revertAll() override;

Q_SIGNALS:
    void doCharactersUpdated();

protected:
    std::unique_ptr<Creature> read(const QString &fileName, const QString &dataFolder) override;
    bool save(Creature &creature) override;
    bool removeFile(Creature &creature) override;
    void revert(Creature *creature) override;
    void settleNames() override;
    void discard(int index) override;
    void addDeletedNames(QStringList &names) const override;

private:
    Creature *makeStandIn(const QString &name);
    void restoreDeleted();

    LibraryList<Creature> m_deleted;
    // Whose deletion is saved, or who never had a file: what a step through the history does to
    // them is no unsaved work.
    LibraryList<Creature> m_gone;
    // With counters of their own: they have no file that could be unsaved.
    LibraryList<Creature> m_standIns;
    std::vector<std::unique_ptr<Creature>> m_retired; // no name finds them any more
    RevertedNames m_reverted;
    TrackerMember m_tracker {__LINE__, "characters"};
};

// The one of the running program. Null before it is made and after shut-down.
extern Characters *theCharacters;
