// The tree of the Monster Manager: the prepared encounters, their groups, and the monsters of each.
#pragma once

#include <QAbstractItemModel>
#include <memory>
#include <vector>

#include "encounterdifficulty.h"

class PreparedEncounter;
struct EncounterMonster;
class QItemSelection;

// A place in the tree: indexes, -1 for a level that isn't reached.
struct EncounterPlace {
    int encounter = -1;
    int group = -1;
    int monster = -1;

    bool operator==(const EncounterPlace &) const = default;
};

// The same by what survives a save, a revert and a reload.
struct EncounterPath {
    const PreparedEncounter *encounter = nullptr; // may be gone
    QString fileName;
    QString name;
    QString group;
    QString id;
};

// A row for each entry of Encounters, deleted ones included; their view hides them. Whoever changes
// the collection by other means than these calls refresh() before the event loop runs again. The
// collection may go before the model.
class EncounterListModel : public QAbstractItemModel {
    Q_OBJECT

public:
    // Beside the text, for the delegate.
    enum Role {
        FitRole = Qt::UserRole, // MonsterFit as int
        IsRichTextRole // whether the text of Qt::DisplayRole is HTML
    };

    explicit EncounterListModel(QObject *parent = nullptr);
    ~EncounterListModel() override;

    // Null out of range, and for one that went without refresh().
    PreparedEncounter *encounterAt(int row) const;
    // -1 for one that has no row.
    int rowOf(const PreparedEncounter *encounter) const;
    EncounterPlace placeOf(const QModelIndex &index) const;
    // Invalid for a position that isn't there.
    QModelIndex indexAt(const EncounterPlace &position) const;
    // What was selected last and is still there.
    EncounterPlace selected() const { return placeOf(m_selected); }
    // The monster's index in PreparedEncounter::monsters(), for a group that of its last monster;
    // -1 for an encounter and for a place that isn't there.
    int monsterIndex(const EncounterPlace &position) const;
    EncounterPlace placeOfMonster(int row, int monsterIndex) const;
    // The path of a place, and the place of a path, as deep as it still exists.
    EncounterPath pathOf(const EncounterPlace &position) const;
    EncounterPlace find(const EncounterPath &path) const;

    // Reads the collection again. A view loses selection and open rows by it.
    void refresh();
    // Names, levels or XP of templates changed. False when the groups are others by now: then
    // nothing is done, and the caller refreshes.
    bool noteTemplatesChanged();
    // Monsters that are too high or too low for it are marked; 0 marks none.
    void setPartyLevel(int level);
    // After a change of what the row of an encounter or of a monster says.
    void noteChanged(const EncounterPlace &position);

    // As a new one, in its place. Returns its row.
    int addEncounter(std::unique_ptr<PreparedEncounter> encounter);
    // Destroys it.
    void removeEncounter(int row);
    // Returns the row to which the new name brings it.
    int renameEncounter(int row, const QString &name);
    // Behind the last of its group. Returns its index.
    int insertMonster(int row, const EncounterMonster &monster);
    // A group goes with its last monster. A position of a group takes all of it.
    void removeMonsters(const EncounterPlace &position);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void doSelectionChanged();

public Q_SLOTS:
    // Of the view's selection model.
    void onInternalSelectionChanged(const QItemSelection &selected,
                                    const QItemSelection &deselected);

private:
    // What the views were told of: it changes only together with their rows. An index points to the
    // node above it, which stays the same when rows move.
    struct Node {
        int row = 0;
        const Node *above = nullptr;
    };
    struct Group : Node {
        QString name;
        QStringList ids;
        bool isMissing = false;
        int level = 0; // 0: unknown
        MonsterFit fit = MonsterFit::Fits;
    };
    struct Entry : Node {
        PreparedEncounter *encounter = nullptr;
        QString fileName;
        QString name;
        bool isModified = false;
        std::vector<std::unique_ptr<Group>> groups;
    };

    Entry *entryAt(int row) const;
    Group *groupAt(const EncounterPlace &position) const;
    std::unique_ptr<Entry> makeEntry(PreparedEncounter *encounter) const;
    std::unique_ptr<Group> makeGroup(const Entry &entry, int row) const;
    // Reads name and template. True when it looks otherwise by it.
    bool readTemplate(Group &group, const PreparedEncounter &encounter) const;
    static QStringList idsOf(const PreparedEncounter &encounter, int group);
    bool hasCurrentGroups(const Entry &entry) const;
    void replaceGroups(Entry *entry);
    void removeMonster(const EncounterPlace &position);
    void renumber();
    QVariant encounterData(const Entry &entry, int role) const;
    QVariant groupData(const Group &group, int role) const;
    QVariant monsterData(const EncounterPlace &position, int role) const;

    std::vector<std::unique_ptr<Entry>> m_entries;
    QPersistentModelIndex m_selected;
    int m_partyLevel = 0;
};

// "6 levels above the party"; empty for a monster that fits.
QString fitText(int monsterLevel, int partyLevel);
