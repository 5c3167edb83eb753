// The library's player characters, one for each file of "Characters". In a fight they stand
// themselves, not as clones.
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <memory>

#include "creature.h"
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
    Creature *find(const QString &name, const Creature *except = nullptr) const;
    int insertionIndex(const QString &name, int exceptIndex = -1) const;
    int add(std::unique_ptr<Creature> creature);
    // With `free` the character moves to the deleted ones; without, it is the caller's.
    void remove(int index, bool free);
    QString newName() const;
    std::unique_ptr<Creature> newCharacter() const;
    const ChangeCounters &counters() const;

    // The character of that name, deleted and missing ones included. With `create` a stand-in with
    // isMissing() set is made for a name that nobody has.
    Creature *ensureCharacter(const QString &name, bool create);
    // The stand-in takes the character's place in the library, for a rename that joined the two. The
    // character lives on like a deleted one, but no name finds it.
    void replaceByStandIn(Creature *character, Creature *standIn);
    // All characters and all stand-ins.
    QList<Creature *> all() const;
    // The running state of all characters starts anew; deleted ones and stand-ins go.
    void resetForEncounter();

    void clear();
    void replaceBy(Characters &other);
    static int fileCount(const QString &dataFolder);
    LoadResult load(const QString &dataFolder, const QString &displayFolder, Progress &progress);
    void saveAll();
    void revertAll();

Q_SIGNALS:
    void doCharactersUpdated();
};
