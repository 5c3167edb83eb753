#include "encounters.h"

#include <QSet>
#include <algorithm>

#include "libraryfolder.h"
#include "paths.h"

Encounters *theEncounters = nullptr;

namespace {

constexpr LibraryFolder folderTexts {
    QT_TRANSLATE_NOOP("LibraryFolder", "Loading encounters..."),
    QT_TRANSLATE_NOOP("LibraryFolder", "Directory <b>Encounters</b> not found in %1."),
    QT_TRANSLATE_NOOP("LibraryFolder", "No Encounters Found"),
    QT_TRANSLATE_NOOP("LibraryFolder",
                      "No encounters could be loaded from <b>Encounters</b> directory in %1."),
};

void clearFlags(PreparedEncounter &encounter)
{
    encounter.setNew(false);
    encounter.setModified(false);
    encounter.setDeleted(false);
}

} // namespace

Encounters::Encounters(QObject *parent)
    : QObject(parent), m_counters(std::make_unique<ChangeCounters>())
{
}

Encounters::~Encounters() = default;

int Encounters::count() const
{
    return int(m_entries.size());
}

PreparedEncounter *Encounters::at(int index) const
{
    return index >= 0 && index < count() ? m_entries[std::size_t(index)].get() : nullptr;
}

int Encounters::indexOf(const PreparedEncounter *encounter) const
{
    for (int i = 0; i < count(); ++i) {
        if (at(i) == encounter)
            return i;
    }
    return -1;
}

int Encounters::add(std::unique_ptr<PreparedEncounter> encounter)
{
    const auto place = std::upper_bound(
        m_entries.begin(), m_entries.end(), encounter, [](const auto &a, const auto &b) {
            return a->name().compare(b->name(), Qt::CaseInsensitive) < 0;
        });
    const int index = int(place - m_entries.begin());
    encounter->setCounters(m_counters.get());
    m_entries.insert(place, std::move(encounter));
    return index;
}

void Encounters::remove(int index)
{
    if (const std::unique_ptr<PreparedEncounter> encounter = take(index))
        clearFlags(*encounter);
}

int Encounters::resort(int index)
{
    std::unique_ptr<PreparedEncounter> encounter = take(index);
    return encounter ? add(std::move(encounter)) : -1;
}

std::unique_ptr<PreparedEncounter> Encounters::take(int index)
{
    if (!at(index))
        return nullptr;
    const auto place = m_entries.begin() + index;
    std::unique_ptr<PreparedEncounter> encounter = std::move(*place);
    m_entries.erase(place);
    return encounter;
}

QStringList Encounters::adventures() const
{
    QSet<QString> names;
    for (const auto &encounter : m_entries)
        names.insert(encounter->adventure());
    names.remove(QString());
    QStringList sorted = names.values();
    sorted.sort();
    return sorted;
}

QString Encounters::newName() const
{
    QSet<QString> taken;
    for (const auto &encounter : m_entries)
        taken.insert(encounter->name().toCaseFolded());
    QString name = tr("New Encounter");
    for (int number = 1; taken.contains(name.toCaseFolded()); ++number)
        name = tr("New Encounter %1").arg(number);
    return name;
}

const ChangeCounters &Encounters::counters() const
{
    return *m_counters;
}

void Encounters::templateRenamed(const QString &oldGroup, const QString &newGroup)
{
    for (const auto &encounter : m_entries) {
        if (encounter->renameGroup(oldGroup, newGroup))
            encounter->refreshChanged();
        encounter->setLevelStale();
    }
}

void Encounters::templateDeleted(const QString &group)
{
    // The entries stay, but their XP may count no more.
    for (const auto &encounter : m_entries) {
        const auto usesGroup = [&group](const EncounterMonster &monster) {
            return monster.group.compare(group, Qt::CaseInsensitive) == 0;
        };
        const QList<EncounterMonster> &monsters = encounter->monsters();
        if (std::any_of(monsters.begin(), monsters.end(), usesGroup))
            encounter->setLevelStale();
    }
}

void Encounters::clear()
{
    m_entries.clear();
    m_counters = std::make_unique<ChangeCounters>();
}

void Encounters::replaceBy(Encounters &other)
{
    clear();
    std::swap(m_entries, other.m_entries);
    std::swap(m_counters, other.m_counters);
    Q_EMIT doEncountersUpdated();
}

int Encounters::fileCount(const QString &dataFolder)
{
    return libraryFileCount(encounterPath(QString(), dataFolder));
}

LoadResult Encounters::load(const QString &dataFolder, const QString &displayFolder,
                            Progress &progress)
{
    clear();
    const auto loadFile = [&](const QString &fileName) {
        auto encounter = std::make_unique<PreparedEncounter>();
        if (!encounter->read(fileName, dataFolder))
            return false;
        add(std::move(encounter));
        return true;
    };
    return loadLibraryFolder(folderTexts, encounterPath(QString(), dataFolder), displayFolder,
                             progress, loadFile);
}

void Encounters::saveAll()
{
    for (int i = count() - 1; i >= 0; --i) {
        PreparedEncounter *encounter = at(i);
        if (encounter->isDeleted()) {
            if (encounter->remove())
                remove(i);
        } else if ((encounter->isNew() || encounter->isModified()) && encounter->write()) {
            clearFlags(*encounter);
        }
    }
}

void Encounters::revertAll()
{
    // Rereading may move an entry, so each index is taken once, from a list of what stood there.
    std::vector<PreparedEncounter *> encounters;
    for (const auto &encounter : m_entries)
        encounters.push_back(encounter.get());
    for (auto it = encounters.rbegin(); it != encounters.rend(); ++it) {
        PreparedEncounter *encounter = *it;
        encounter->setDeleted(false);
        if (encounter->isNew())
            remove(indexOf(encounter));
        else if (encounter->isModified())
            reread(indexOf(encounter));
    }
}

// An encounter whose file can't be read any more stays as it is, with its mark.
void Encounters::reread(int index)
{
    auto encounter = std::make_unique<PreparedEncounter>();
    if (!encounter->read(at(index)->fileName(), QString()))
        return;
    remove(index);
    add(std::move(encounter));
}

#include "moc_encounters.cpp"
