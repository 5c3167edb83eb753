// The library of prepared encounters.
#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <memory>

#include "creature.h"
#include "preparedencounter.h"
#include "progress.h"

class Encounters : public QObject {
    Q_OBJECT

public:
    explicit Encounters(QObject *parent = nullptr);
    ~Encounters() override;

    // Sorted by name ignoring case.
    int count() const;
    PreparedEncounter *at(int index) const;
    int add(std::unique_ptr<PreparedEncounter> encounter);
    void remove(int index);
    // Sorted; what the boxes that filter by adventure show.
    QStringList adventures() const;
    QString newName() const;
    const ChangeCounters &counters() const;

    // Entries follow the template's new name; those of a deleted template stay.
    void templateRenamed(const QString &oldGroup, const QString &newGroup);
    void templateDeleted(const QString &group);

    void clear();
    void replaceBy(Encounters &other);
    static int fileCount(const QString &dataFolder);
    LoadResult load(const QString &dataFolder, const QString &displayFolder, Progress &progress);
    void saveAll();
    void revertAll();

Q_SIGNALS:
    void doEncountersUpdated();
};
