#include "encounters.h"

#include <QSet>
#include <algorithm>

#include "libraryfolder.h"
#include "paths.h"

Encounters *theEncounters = nullptr;

namespace {

constexpr LibraryFolder encountersFolder {
    [](const QString &dataFolder) { return encounterPath(QString(), dataFolder); },
    QT_TRANSLATE_NOOP("LibraryFolder", "Loading encounters..."),
    QT_TRANSLATE_NOOP("LibraryFolder", "Directory <b>Encounters</b> not found in %1."),
    QT_TRANSLATE_NOOP("LibraryFolder", "No Encounters Found"),
    QT_TRANSLATE_NOOP("LibraryFolder",
                      "No encounters could be loaded from <b>Encounters</b> directory in %1."),
};

QString encounterKey(const PreparedEncounter &encounter)
{
    return encounter.name();
}

} // namespace

Encounters::Encounters(QObject *parent)
    : QObject(parent), Collection(encounterKey, encountersFolder)
{
}

Encounters::~Encounters() = default;

void Encounters::remove(int index)
{
    discard(index);
}

QString Encounters::allAdventures()
{
    return tr("All Adventures");
}

bool Encounters::matches(const PreparedEncounter &encounter, const QString &text,
                         const QString &adventure)
{
    const bool anyAdventure = adventure.isEmpty() || adventure == allAdventures();
    return !encounter.isDeleted() && encounter.name().contains(text, Qt::CaseInsensitive)
        && (anyAdventure || encounter.adventure() == adventure);
}

QStringList Encounters::adventures() const
{
    QSet<QString> names;
    for (const PreparedEncounter *encounter : m_entries.list())
        names.insert(encounter->adventure());
    names.remove(QString());
    QStringList sorted = names.values();
    sorted.sort();
    return sorted;
}

QString Encounters::newName() const
{
    return freeName(tr("New Encounter"),
                    [this](const QString &name) { return m_entries.find(name) != nullptr; });
}

void Encounters::templateRenamed(const QString &oldGroup, const QString &newGroup)
{
    templatesRenamed({{oldGroup, newGroup}});
}

void Encounters::templatesRenamed(const QList<Renamed> &renamed)
{
    for (PreparedEncounter *encounter : m_entries.list()) {
        if (encounter->renameGroups(renamed))
            encounter->refreshChanged();
        encounter->setLevelStale();
    }
}

void Encounters::templateDeleted(const QString &group)
{
    // The entries stay, but their XP may count no more.
    for (const PreparedEncounter *encounter : m_entries.list()) {
        const auto usesGroup = [&group](const EncounterMonster &monster) {
            return monster.group.compare(group, Qt::CaseInsensitive) == 0;
        };
        const QList<EncounterMonster> &monsters = encounter->monsters();
        if (std::any_of(monsters.begin(), monsters.end(), usesGroup))
            encounter->setLevelStale();
    }
}

void Encounters::markLevelsStale()
{
    for (const PreparedEncounter *encounter : m_entries.list())
        encounter->setLevelStale();
}

void Encounters::replaceBy(Encounters &other)
{
    clear();
    swapWith(other);
    Q_EMIT doEncountersUpdated();
}

int Encounters::fileCount(const QString &dataFolder)
{
    return libraryFileCount(encountersFolder, dataFolder);
}

std::unique_ptr<PreparedEncounter> Encounters::read(const QString &fileName,
                                                    const QString &dataFolder)
{
    auto encounter = std::make_unique<PreparedEncounter>();
    if (!encounter->read(fileName, dataFolder))
        return nullptr;
    return encounter;
}

bool Encounters::save(PreparedEncounter &encounter)
{
    return encounter.write();
}

bool Encounters::removeFile(PreparedEncounter &encounter)
{
    return encounter.remove();
}

void Encounters::revert(PreparedEncounter *encounter)
{
    if (encounter->isNew() || !encounter->isModified())
        return;
    // One whose file can't be read any more stays as it is, with its mark.
    if (std::unique_ptr<PreparedEncounter> saved = read(encounter->fileName(), QString())) {
        remove(indexOf(encounter));
        add(std::move(saved));
    }
}

#include "moc_encounters.cpp"
