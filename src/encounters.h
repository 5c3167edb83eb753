// The library of prepared encounters.
#pragma once

#include <QList>
#include <QObject>
#include <memory>

#include "collection.h"
#include "memorytracker.h"
#include "preparedencounter.h"
#include "revertednames.h"

class Encounters : public QObject, public Collection<PreparedEncounter> {
    Q_OBJECT

public:
    explicit Encounters(QObject *parent = nullptr);
    ~Encounters() override;

    // Destroys the encounter.
    void remove(int index);
    // What stands for no filter in a box of adventures.
    static QString allAdventures();
    // Not deleted, a name that holds `text`, ignoring case, and of `adventure`: an empty one and
    // allAdventures() stand for any.
    static bool matches(const PreparedEncounter &encounter, const QString &text,
                        const QString &adventure);
    // Sorted; what the boxes that filter by adventure show.
    QStringList adventures() const;
    QString newName() const;

    // Entries follow the template's new name; those of a deleted template stay.
    void templateRenamed(const QString &oldGroup, const QString &newGroup);
    // All at once, so that templates may swap their names.
    void templatesRenamed(const QList<Renamed> &renamed);
    void templateDeleted(const QString &group);
    // The templates' XP may have changed: level and XP of all are worked out anew when asked for.
    void markLevelsStale();

    // Takes everything out of `other`.
    void replaceBy(Encounters &other);
    static int fileCount(const QString &dataFolder);

Q_SIGNALS:
    void doEncountersUpdated();

protected:
    std::unique_ptr<PreparedEncounter> read(const QString &fileName,
                                            const QString &dataFolder) override;
    bool save(PreparedEncounter &encounter) override;
    bool removeFile(PreparedEncounter &encounter) override;
    // Reads a changed encounter anew: pointers to it become invalid.
    void revert(PreparedEncounter *encounter) override;

private:
    TrackerMember m_tracker {__LINE__, "encounters"};
};

// The one of the running program. Null before it is made and after shut-down.
extern Encounters *theEncounters;
