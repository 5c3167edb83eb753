// The library's monsters, one for each file of "Monsters", and the clones that are in play.
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <memory>

#include "creature.h"
#include "progress.h"

// Owns its templates and all clones: a clone lives from its first mention until the collection is
// cleared, so that the log can name it.
class Monsters : public QObject {
    Q_OBJECT

public:
    explicit Monsters(QObject *parent = nullptr);
    ~Monsters() override;

    // Templates, sorted by group ignoring case; later additions of an equal key stand last.
    int count() const;
    Creature *at(int index) const;
    int indexOf(const Creature *creature) const;
    // Deleted entries are found too: their names stay taken until they are saved.
    Creature *findGroup(const QString &group) const;
    // Entries that aren't deleted, by file name ignoring case.
    Creature *findFile(const QString &fileName) const;
    // Where `name` belongs, passing over the entry at `exceptIndex` (-1: none).
    int insertionIndex(const QString &name, int exceptIndex = -1) const;
    // Takes the creature over. Returns its index.
    int add(std::unique_ptr<Creature> creature);
    // With `free` the creature is destroyed; without, it is the caller's.
    void remove(int index, bool free);
    QString newName() const;
    // A new monster with the starter text, ready for the Monster Manager; not yet added.
    std::unique_ptr<Creature> newMonster() const;
    const ChangeCounters &counters() const;

    // The clone of template `group` that has the name `id`. `group` takes the template's own
    // spelling. With `create` a template that is missing is made up, once for each name, and a
    // missing clone is made; without, null for either.
    Creature *ensureTemplate(QString &group, const QString &id, bool create);
    // All clones that were named so far.
    QList<Creature *> clones() const;
    // Takes a clone off without destroying it before the collection goes: a merge replaced it.
    void retireClone(Creature *creature);
    // Forgets the fight: every clone goes.
    void resetForEncounter();

    void clear();
    // Takes everything out of `other`.
    void replaceBy(Monsters &other);
    static int fileCount(const QString &dataFolder);
    LoadResult load(const QString &dataFolder, const QString &displayFolder, Progress &progress);

    // Walks from last to first; what can't be written keeps its flags.
    void saveAll();
    void revertAll();

Q_SIGNALS:
    void doTemplatesUpdated();
};
