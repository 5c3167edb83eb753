#include "encounterlistmodel.h"

#include <QItemSelection>
#include <algorithm>

#include "creature.h"
#include "encounters.h"
#include "monsters.h"
#include "text.h"

QString fitText(int monsterLevel, int partyLevel)
{
    switch (monsterFit(monsterLevel, partyLevel)) {
    case MonsterFit::TooHigh:
        return EncounterListModel::tr("%1 levels above the party").arg(monsterLevel - partyLevel);
    case MonsterFit::TooLow:
        return EncounterListModel::tr("%1 levels below the party").arg(partyLevel - monsterLevel);
    case MonsterFit::Fits:
        break;
    }
    return {};
}

EncounterListModel::EncounterListModel(QObject *parent) : QAbstractItemModel(parent)
{
    refresh();
}

EncounterListModel::~EncounterListModel() = default;

// --- places ---

EncounterListModel::Entry *EncounterListModel::entryAt(int row) const
{
    return row >= 0 && row < int(m_entries.size()) ? m_entries[std::size_t(row)].get() : nullptr;
}

EncounterListModel::Group *EncounterListModel::groupAt(const EncounterPlace &position) const
{
    const Entry *entry = entryAt(position.encounter);
    return entry && position.group >= 0 && position.group < int(entry->groups.size())
        ? entry->groups[std::size_t(position.group)].get()
        : nullptr;
}

PreparedEncounter *EncounterListModel::encounterAt(int row) const
{
    const Entry *entry = entryAt(row);
    // The collection's own answer, which never is one that was destroyed.
    PreparedEncounter *encounter = entry && theEncounters ? theEncounters->at(row) : nullptr;
    return encounter && encounter == entry->encounter ? encounter : nullptr;
}

int EncounterListModel::rowOf(const PreparedEncounter *encounter) const
{
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [encounter](const auto &entry) { return entry->encounter == encounter; });
    return found == m_entries.end() ? -1 : (*found)->row;
}

EncounterPlace EncounterListModel::placeOf(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return {};
    const auto *node = static_cast<const Node *>(index.constInternalPointer());
    if (!node)
        return {index.row(), -1, -1};
    if (!node->above)
        return {node->row, index.row(), -1};
    return {node->above->row, node->row, index.row()};
}

QModelIndex EncounterListModel::indexAt(const EncounterPlace &position) const
{
    QModelIndex found = index(position.encounter, 0);
    for (const int row : {position.group, position.monster}) {
        if (row < 0 || !found.isValid())
            break;
        found = index(row, 0, found);
    }
    return found;
}

int EncounterListModel::monsterIndex(const EncounterPlace &position) const
{
    const Group *group = groupAt(position);
    const PreparedEncounter *encounter = encounterAt(position.encounter);
    if (!group || !encounter || position.monster >= group->ids.size())
        return -1;
    const int start = encounter->groupStarts().value(position.group, -1);
    const int inGroup = position.monster < 0 ? int(group->ids.size()) - 1 : position.monster;
    return start >= 0 && start + inGroup < encounter->monsters().size() ? start + inGroup : -1;
}

EncounterPlace EncounterListModel::placeOfMonster(int row, int monsterIndex) const
{
    const PreparedEncounter *encounter = encounterAt(row);
    const int group = encounter ? encounter->groupOf(monsterIndex) : -1;
    if (group < 0)
        return {row, -1, -1};
    return {row, group, monsterIndex - encounter->groupStarts().at(group)};
}

EncounterPath EncounterListModel::pathOf(const EncounterPlace &position) const
{
    const Entry *entry = entryAt(position.encounter);
    if (!entry)
        return {};
    EncounterPath path {entry->encounter, entry->fileName, entry->name, {}, {}};
    const Group *group = groupAt(position);
    if (!group)
        return path;
    path.group = group->name;
    path.id = group->ids.value(position.monster);
    return path;
}

EncounterPlace EncounterListModel::find(const EncounterPath &path) const
{
    const Entry *entry = nullptr;
    for (const auto &each : m_entries) {
        const bool isSame =
            path.fileName.isEmpty() ? each->name == path.name : each->fileName == path.fileName;
        // Of several with that name it is the same object.
        if (isSame && (!entry || each->encounter == path.encounter))
            entry = each.get();
    }
    if (!entry)
        return {};
    EncounterPlace position {entry->row, -1, -1};
    for (const auto &group : entry->groups) {
        if (path.group.isEmpty() || group->name != path.group)
            continue;
        position.group = group->row;
        position.monster = path.id.isEmpty() ? -1 : int(group->ids.indexOf(path.id));
        if (position.monster >= 0 || path.id.isEmpty())
            break;
    }
    return position;
}

// --- reading the collection ---

void EncounterListModel::refresh()
{
    beginResetModel();
    m_entries.clear();
    for (int i = 0; theEncounters && i < theEncounters->count(); ++i)
        m_entries.push_back(makeEntry(theEncounters->at(i)));
    renumber();
    endResetModel();
}

std::unique_ptr<EncounterListModel::Entry>
EncounterListModel::makeEntry(PreparedEncounter *encounter) const
{
    auto entry = std::make_unique<Entry>();
    entry->encounter = encounter;
    entry->fileName = encounter->fileName();
    entry->name = encounter->name();
    entry->isModified = encounter->isModified();
    for (int i = 0; i < encounter->groupStarts().size(); ++i)
        entry->groups.push_back(makeGroup(*entry, i));
    return entry;
}

std::unique_ptr<EncounterListModel::Group> EncounterListModel::makeGroup(const Entry &entry,
                                                                         int row) const
{
    auto group = std::make_unique<Group>();
    group->row = row;
    group->above = &entry;
    group->ids = idsOf(*entry.encounter, row);
    readTemplate(*group, *entry.encounter);
    return group;
}

QStringList EncounterListModel::idsOf(const PreparedEncounter &encounter, int group)
{
    const QList<EncounterMonster> &monsters = encounter.monsters();
    const int end = encounter.groupStarts().value(group + 1, int(monsters.size()));
    QStringList ids;
    for (int i = encounter.groupStarts().at(group); i < end; ++i)
        ids << monsters.at(i).id;
    return ids;
}

bool EncounterListModel::readTemplate(Group &group, const PreparedEncounter &encounter) const
{
    const QString &name = encounter.monsters().at(encounter.groupStarts().at(group.row)).group;
    const Creature *original = theMonsters ? theMonsters->findGroup(name) : nullptr;
    const bool isMissing = !original || original->isDeleted();
    const int level = original && !original->isInvalid() ? original->level() : 0;
    const MonsterFit fit =
        m_partyLevel > 0 && level > 0 ? monsterFit(level, m_partyLevel) : MonsterFit::Fits;
    const bool isOther = group.name != name || group.isMissing != isMissing || group.fit != fit;
    group.name = name;
    group.isMissing = isMissing;
    group.level = level;
    group.fit = fit;
    return isOther;
}

bool EncounterListModel::hasCurrentGroups(const Entry &entry) const
{
    const PreparedEncounter *encounter = encounterAt(entry.row);
    if (!encounter || encounter->groupStarts().size() != qsizetype(entry.groups.size()))
        return false;
    return std::all_of(entry.groups.begin(), entry.groups.end(), [&](const auto &group) {
        return group->ids == idsOf(*encounter, group->row);
    });
}

bool EncounterListModel::noteTemplatesChanged()
{
    const int count = theEncounters ? theEncounters->count() : 0;
    if (count != int(m_entries.size())
        || !std::all_of(m_entries.begin(), m_entries.end(),
                        [this](const auto &entry) { return hasCurrentGroups(*entry); }))
        return false;
    for (const auto &entry : m_entries) {
        for (const auto &group : entry->groups) {
            if (!readTemplate(*group, *entry->encounter))
                continue;
            const QModelIndex index = indexAt({entry->row, group->row, -1});
            Q_EMIT dataChanged(index, index);
            Q_EMIT dataChanged(this->index(0, 0, index),
                               this->index(int(group->ids.size()) - 1, 0, index));
        }
        if (entry->isModified != entry->encounter->isModified())
            noteChanged({entry->row, -1, -1});
    }
    return true;
}

void EncounterListModel::setPartyLevel(int level)
{
    if (level == m_partyLevel)
        return;
    m_partyLevel = level;
    noteTemplatesChanged();
}

void EncounterListModel::noteChanged(const EncounterPlace &position)
{
    const QModelIndex changed = indexAt(position);
    const QModelIndex encounter = index(position.encounter, 0);
    if (!encounterAt(position.encounter))
        return;
    entryAt(position.encounter)->isModified = encounterAt(position.encounter)->isModified();
    if (Group *group = groupAt(position))
        group->ids = idsOf(*encounterAt(position.encounter), position.group);
    Q_EMIT dataChanged(encounter, encounter);
    if (changed.isValid() && changed != encounter)
        Q_EMIT dataChanged(changed, changed);
}

void EncounterListModel::renumber()
{
    int row = 0;
    for (const auto &entry : m_entries)
        entry->row = row++;
}

// --- changes ---

int EncounterListModel::addEncounter(std::unique_ptr<PreparedEncounter> encounter)
{
    if (!theEncounters)
        return -1;
    const int row = theEncounters->insertionIndex(encounter->name());
    beginInsertRows({}, row, row);
    PreparedEncounter *added = theEncounters->addNew(std::move(encounter));
    m_entries.insert(m_entries.begin() + row, makeEntry(added));
    renumber();
    endInsertRows();
    return row;
}

void EncounterListModel::removeEncounter(int row)
{
    if (!encounterAt(row))
        return;
    beginRemoveRows({}, row, row);
    m_entries.erase(m_entries.begin() + row);
    theEncounters->remove(row);
    renumber();
    endRemoveRows();
}

int EncounterListModel::renameEncounter(int row, const QString &name)
{
    PreparedEncounter *encounter = encounterAt(row);
    if (!encounter)
        return row;
    const int before = theEncounters->insertionIndex(name, row);
    encounter->setName(name);
    m_entries[std::size_t(row)]->name = name;
    // The row already stands there: in front of itself or behind.
    if (before == row || before == row + 1) {
        noteChanged({row, -1, -1});
        return row;
    }
    beginMoveRows({}, row, row, {}, before);
    const int moved = theEncounters->resort(encounter);
    std::unique_ptr<Entry> entry = std::move(m_entries[std::size_t(row)]);
    m_entries.erase(m_entries.begin() + row);
    m_entries.insert(m_entries.begin() + moved, std::move(entry));
    renumber();
    endMoveRows();
    noteChanged({moved, -1, -1});
    return moved;
}

int EncounterListModel::insertMonster(int row, const EncounterMonster &monster)
{
    PreparedEncounter *encounter = encounterAt(row);
    Entry *entry = entryAt(row);
    if (!encounter)
        return -1;
    const auto last =
        std::find_if(entry->groups.rbegin(), entry->groups.rend(), [&monster](const auto &group) {
            return group->name.compare(monster.group, Qt::CaseInsensitive) == 0;
        });
    int index = -1;
    if (last == entry->groups.rend()) {
        const int groupRow = int(entry->groups.size());
        beginInsertRows(this->index(row, 0), groupRow, groupRow);
        index = encounter->insertMonster(monster);
        entry->groups.push_back(makeGroup(*entry, groupRow));
        endInsertRows();
    } else {
        Group &group = **last;
        const QModelIndex groupIndex = indexAt({row, group.row, -1});
        beginInsertRows(groupIndex, int(group.ids.size()), int(group.ids.size()));
        index = encounter->insertMonster(monster);
        group.ids << monster.id;
        endInsertRows();
        Q_EMIT dataChanged(groupIndex, groupIndex);
    }
    noteChanged({row, -1, -1});
    return index;
}

void EncounterListModel::removeMonsters(const EncounterPlace &position)
{
    const Group *group = groupAt(position);
    if (!group)
        return;
    if (position.monster >= 0) {
        removeMonster(position);
        return;
    }
    for (int last = int(group->ids.size()) - 1; last >= 0; --last)
        removeMonster({position.encounter, position.group, last});
}

void EncounterListModel::removeMonster(const EncounterPlace &position)
{
    const int index = monsterIndex(position);
    if (index < 0)
        return;
    Entry *entry = entryAt(position.encounter);
    Group *group = groupAt(position);
    const bool isLast = group->ids.size() == 1;
    const QModelIndex above = indexAt({position.encounter, isLast ? -1 : position.group, -1});
    const int row = isLast ? position.group : position.monster;
    beginRemoveRows(above, row, row);
    encounterAt(position.encounter)->removeMonster(index);
    if (isLast) {
        entry->groups.erase(entry->groups.begin() + row);
        for (std::size_t i = 0; i < entry->groups.size(); ++i)
            entry->groups[i]->row = int(i);
    } else {
        group->ids.removeAt(row);
    }
    endRemoveRows();
    // The neighbours of a group that went may be two parts of one.
    if (!hasCurrentGroups(*entry))
        replaceGroups(entry);
    noteChanged({position.encounter, isLast ? -1 : position.group, -1});
}

void EncounterListModel::replaceGroups(Entry *entry)
{
    const QModelIndex above = index(entry->row, 0);
    if (!entry->groups.empty()) {
        beginRemoveRows(above, 0, int(entry->groups.size()) - 1);
        entry->groups.clear();
        endRemoveRows();
    }
    const int count = int(entry->encounter->groupStarts().size());
    if (count == 0)
        return;
    beginInsertRows(above, 0, count - 1);
    for (int i = 0; i < count; ++i)
        entry->groups.push_back(makeGroup(*entry, i));
    endInsertRows();
}

// --- the model's interface ---

QModelIndex EncounterListModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    const EncounterPlace above = placeOf(parent);
    const Node *node = groupAt(above);
    return createIndex(row, column, node ? node : entryAt(above.encounter));
}

QModelIndex EncounterListModel::parent(const QModelIndex &index) const
{
    const auto *node = static_cast<const Node *>(index.constInternalPointer());
    return node ? createIndex(node->row, 0, node->above) : QModelIndex();
}

int EncounterListModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_entries.size());
    const EncounterPlace above = placeOf(parent);
    if (above.monster >= 0)
        return 0;
    if (above.group < 0) {
        const Entry *entry = entryAt(above.encounter);
        return entry ? int(entry->groups.size()) : 0;
    }
    const Group *group = groupAt(above);
    return group ? int(group->ids.size()) : 0;
}

int EncounterListModel::columnCount(const QModelIndex & /*parent*/) const
{
    return 1;
}

QVariant EncounterListModel::data(const QModelIndex &index, int role) const
{
    const EncounterPlace position = placeOf(index);
    const Entry *entry = entryAt(position.encounter);
    if (!entry || !encounterAt(position.encounter))
        return {};
    if (position.group < 0)
        return encounterData(*entry, role);
    if (position.monster >= 0)
        return monsterData(position, role);
    const Group *group = groupAt(position);
    return group ? groupData(*group, role) : QVariant();
}

QVariant EncounterListModel::encounterData(const Entry &entry, int role) const
{
    const QString name = shortened(entry.encounter->name(), LongestName);
    const bool isModified = entry.encounter->isModified();
    switch (role) {
    case Qt::DisplayRole:
        return isModified ? QString(name + u'*') : name;
    case Qt::AccessibleTextRole:
        return isModified ? tr("%1, not saved").arg(name) : name;
    default:
        return {};
    }
}

QVariant EncounterListModel::groupData(const Group &group, int role) const
{
    const QString name = shortened(group.name, LongestName);
    const QString fit =
        group.fit == MonsterFit::Fits ? QString() : fitText(group.level, m_partyLevel);
    switch (role) {
    case Qt::DisplayRole:
        return group.isMissing
            ? tr("<font color=red>%1 - Missing</font>").arg(asHtml(group.name, LongestName))
            : tr("%1 (%2)").arg(name, QString::number(group.ids.size()));
    case IsRichTextRole:
        return group.isMissing;
    case FitRole:
        return int(group.fit);
    case Qt::ToolTipRole:
        return fit;
    case Qt::AccessibleTextRole: {
        QStringList texts {name, QString::number(group.ids.size())};
        if (group.isMissing)
            texts << tr("missing");
        if (!fit.isEmpty())
            texts << fit;
        return texts.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

QVariant EncounterListModel::monsterData(const EncounterPlace &position, int role) const
{
    const int index = monsterIndex(position);
    const Group *group = groupAt(position);
    if (index < 0 || !group)
        return {};
    const EncounterMonster &monster = encounterAt(position.encounter)->monsters().at(index);
    const QString id = shortened(monster.id, LongestName);
    switch (role) {
    case Qt::DisplayRole:
        return id;
    case FitRole:
    case Qt::ToolTipRole:
        return groupData(*group, role);
    case Qt::AccessibleTextRole: {
        QStringList texts {id};
        if (!monster.alias.isEmpty())
            texts << shortened(monster.alias, LongestName);
        if (monster.hidden)
            texts << tr("hidden");
        if (group->fit != MonsterFit::Fits)
            texts << fitText(group->level, m_partyLevel);
        return texts.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

QVariant EncounterListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section != 0 || orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return tr("Name");
}

void EncounterListModel::onInternalSelectionChanged(const QItemSelection &selected,
                                                    const QItemSelection &deselected)
{
    const QModelIndexList indexes = selected.indexes();
    const QModelIndex index = indexes.isEmpty() ? QModelIndex() : indexes.last();
    // When other rows are removed, neither list holds this one.
    const bool isGone = !index.isValid() && deselected.contains(m_selected);
    if (index == m_selected || (!index.isValid() && !isGone))
        return;
    m_selected = index;
    Q_EMIT doSelectionChanged();
}
