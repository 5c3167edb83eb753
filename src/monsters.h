// The library's monsters, one for each file of "Monsters", and the clones that are in play.
#pragma once

#include <QList>
#include <QObject>
#include <memory>

#include "creaturelibrary.h"
#include "memorytracker.h"
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
    // `group`, or with the first number from 2 that no template but `except` has.
    QString uniqueGroup(const QString &group, const Creature *except = nullptr) const;
    // Entries that aren't deleted, by file name ignoring case.
    Creature *findFile(const QString &fileName) const;
    // Where `name` belongs, passing over the entry at `exceptIndex` (-1: none).
    int insertionIndex(const QString &name, int exceptIndex = -1) const;
    // Takes the creature over. Returns its index. The flags of a new one are set behind this, or
    // they would not be counted.
    int add(std::unique_ptr<Creature> creature);
    // With `free` the creature is destroyed; without, the caller gets it.
    std::unique_ptr<Creature> remove(int index, bool free);
    QString newName() const;
    // A new monster with the starter text, ready for the Monster Manager; neither added nor
    // flagged.
    std::unique_ptr<Creature> newMonster() const;
    const ChangeCounters &counters() const;

    // The clone of template `group` that has the name `id`. `group` takes the template's own
    // spelling. With `create` a template that is missing is made up, once for each name, and a
    // missing clone is made; without, null for either.
    Creature *ensureTemplate(QString &group, const QString &id, bool create);
    // All clones that were named so far.
    QList<Creature *> clones() const;
    // The clone is found no more, but lives on with the collection: a merge replaced it.
    void retireClone(Creature *creature);
    // Forgets the fight: every clone goes.
    void resetForEncounter();

    void clear();
    // Takes everything out of `other`.
    void replaceBy(Monsters &other);
    static int fileCount(const QString &dataFolder);
    LoadResult load(const QString &dataFolder, const QString &displayFolder, Progress &progress);

    // Writes what is new or changed and removes the files of deleted entries. What can't be written
    // keeps its flags.
    void saveAll();
    // Back to the saved texts; the encounters follow a group that changes its name.
    void revertAll();

Q_SIGNALS:
    void doTemplatesUpdated();
    void doTemplateRenamed(const QString &oldGroup, const QString &newGroup);

private:
    Creature *makeUpTemplate(const QString &group);
    Creature *makeClone(const Creature *original, const QString &id);

    std::shared_ptr<ChangeCounters> m_counters;
    CreatureLibrary m_templates;
    // With counters of their own: what happens to a clone in a fight is no unsaved work.
    CreatureLibrary m_clones;
    std::vector<std::unique_ptr<Creature>> m_retired;
    TrackerMember m_tracker {__LINE__, "monsters"};
};

// The one of the running program. Null before it is made and after shut-down.
extern Monsters *theMonsters;
