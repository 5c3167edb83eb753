// The library of prepared encounters.
#pragma once

#include <QList>
#include <QObject>
#include <memory>
#include <vector>

#include "creature.h"
#include "memorytracker.h"
#include "preparedencounter.h"
#include "progress.h"

class Encounters : public QObject {
    Q_OBJECT

public:
    explicit Encounters(QObject *parent = nullptr);
    ~Encounters() override;

    // Sorted by name ignoring case.
    int count() const;
    // Null for an index out of range.
    PreparedEncounter *at(int index) const;
    int indexOf(const PreparedEncounter *encounter) const;
    // Takes the encounter over. Returns its index. The flags of a new one are set behind this, or
    // they would not be counted.
    int add(std::unique_ptr<PreparedEncounter> encounter);
    // Destroys the encounter.
    void remove(int index);
    // Puts the encounter where its changed name belongs. Returns its new index.
    int resort(int index);
    // Sorted; what the boxes that filter by adventure show.
    QStringList adventures() const;
    QString newName() const;
    const ChangeCounters &counters() const;

    // Entries follow the template's new name; those of a deleted template stay.
    void templateRenamed(const QString &oldGroup, const QString &newGroup);
    void templateDeleted(const QString &group);

    void clear();
    // Takes everything out of `other`.
    void replaceBy(Encounters &other);
    static int fileCount(const QString &dataFolder);
    LoadResult load(const QString &dataFolder, const QString &displayFolder, Progress &progress);
    // Writes what is new or changed and removes the files of deleted entries. What can't be written
    // keeps its flags.
    void saveAll();
    // Reads changed encounters anew: pointers to those become invalid.
    void revertAll();

Q_SIGNALS:
    void doEncountersUpdated();

private:
    std::unique_ptr<PreparedEncounter> take(int index);
    void reread(int index);

    std::unique_ptr<ChangeCounters> m_counters;
    std::vector<std::unique_ptr<PreparedEncounter>> m_entries;
    TrackerMember m_tracker {__LINE__, "encounters"};
};

// The one of the running program. Null before it is made and after shut-down.
extern Encounters *theEncounters;
