// The library's monsters, one for each file of "Monsters", and the clones that are in play.
#pragma once

#include <QList>
#include <QObject>
#include <memory>

#include "collection.h"
#include "creature.h"
#include "memorytracker.h"
#include "revertednames.h"

// Owns its templates and all clones: a clone lives from its first mention until the collection is
// cleared, so that the log can name it.
class Monsters : public QObject, public Collection<Creature> {
    Q_OBJECT

public:
    explicit Monsters(QObject *parent = nullptr);
    ~Monsters() override;

    // The entries are the templates, sorted by group. Those that were made up for a fight or an
    // encounter are not among them, and leave their names free.
    // Deleted entries are found too: their names stay taken until they are saved.
    Creature *findGroup(const QString &group) const;
    NameState nameState(const QString &group, const Creature *except = nullptr) const;
    // The same as findGroup(), or else the template that was made up for a missing one.
    Creature *findTemplate(const QString &group) const;
    // `group`, or with the first number from 2 that no template but `except` has.
    QString uniqueGroup(const QString &group, const Creature *except = nullptr) const;
    // Entries that aren't deleted, by file name ignoring case.
    Creature *findFile(const QString &fileName) const;
    // Takes a file of any folder into "Monsters" by its bare name, where a file of that name stays
    // as it is, and adds what a load makes of it, as saved. Null, and no file left behind, where
    // it gives no creature. A deleted entry that has the file comes back as it is.
    Creature *takeFile(const QString &path);
    // With `free` the creature is destroyed; without, the caller becomes its owner.
    std::unique_ptr<Creature> remove(int index, bool free);
    QString newName() const;
    // A new monster with the starter text, ready for the Monster Manager; neither added nor
    // flagged.
    std::unique_ptr<Creature> newMonster() const;

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

    void clear() override;
    // Takes everything out of `other`.
    void replaceBy(Monsters &other);
    static int fileCount(const QString &dataFolder);
    void saveAll() override;
    void revertAll() override;

Q_SIGNALS:
    void doTemplatesUpdated();
    // By revertAll(): the encounters follow.
    void doTemplatesRenamed(const QList<Renamed> &renamed);
    // Templates came or went otherwise than by add() and remove(), or have other XP.
    void doXpChanged();

protected:
    std::unique_ptr<Creature> read(const QString &fileName, const QString &dataFolder) override;
    bool save(Creature &creature) override;
    bool removeFile(Creature &creature) override;
    void revert(Creature *creature) override;
    void settleNames() override;

private:
    Creature *makeUpTemplate(const QString &group);
    Creature *makeClone(const Creature *original, const QString &id);

    // With counters of their own: what happens in a fight is no unsaved work, and nothing has to be
    // saved of what was made up.
    LibraryList<Creature> m_madeUp;
    LibraryList<Creature> m_clones;
    std::vector<std::unique_ptr<Creature>> m_retired;
    RevertedNames m_reverted;
    TrackerMember m_tracker {__LINE__, "monsters"};
};

// The one of the running program. Null before it is made and after shut-down.
extern Monsters *theMonsters;
