#include "monsters.h"

#include "creatureportrait.h"
#include "creaturetext.h"
#include "libraryfolder.h"
#include "paths.h"

Monsters *theMonsters = nullptr;

namespace {

constexpr LibraryFolder folderTexts {
    QT_TRANSLATE_NOOP("LibraryFolder", "Loading monsters..."),
    QT_TRANSLATE_NOOP("LibraryFolder", "Directory <b>Monsters</b> not found in %1."),
    QT_TRANSLATE_NOOP("LibraryFolder", "No Monsters Found"),
    QT_TRANSLATE_NOOP("LibraryFolder",
                      "No monsters could be loaded from <b>Monsters</b> directory in %1."),
};

QString templateKey(const Creature &creature)
{
    return creature.group();
}

// No name can hold the separator, which no key of a keyboard gives.
QString cloneKey(const QString &group, const QString &id)
{
    return group + QChar(0x1f) + id;
}

QString keyOfClone(const Creature &creature)
{
    return cloneKey(creature.group(), creature.name());
}

// As after a load: full health, and nothing for the check of vitality to find.
void readyForPlay(Creature &creature)
{
    creature.setNameBefore(creature.name());
    creature.extendedRest(false);
    creature.syncShadows();
}

std::unique_ptr<Creature> fromStarterText(CreatureData data)
{
    data.statBlock = textOf(data);
    auto creature = std::make_unique<Creature>();
    creature->assign(data);
    readyForPlay(*creature);
    return creature;
}

} // namespace

Monsters::Monsters(QObject *parent)
    : QObject(parent), m_counters(std::make_shared<ChangeCounters>()),
      m_templates(templateKey, m_counters), m_clones(keyOfClone, std::make_shared<ChangeCounters>())
{
}

Monsters::~Monsters() = default;

int Monsters::count() const
{
    return m_templates.count();
}

Creature *Monsters::at(int index) const
{
    return m_templates.at(index);
}

int Monsters::indexOf(const Creature *creature) const
{
    return m_templates.indexOf(creature);
}

Creature *Monsters::findGroup(const QString &group) const
{
    return m_templates.find(group);
}

QString Monsters::uniqueGroup(const QString &group, const Creature *except) const
{
    return m_templates.uniqueKey(group, except);
}

Creature *Monsters::findFile(const QString &fileName) const
{
    for (int i = 0; i < count(); ++i) {
        Creature *creature = at(i);
        if (!creature->isDeleted()
            && creature->fileName().compare(fileName, Qt::CaseInsensitive) == 0)
            return creature;
    }
    return nullptr;
}

int Monsters::insertionIndex(const QString &name, int exceptIndex) const
{
    return m_templates.insertionIndex(name, exceptIndex);
}

int Monsters::add(std::unique_ptr<Creature> creature)
{
    return m_templates.add(std::move(creature));
}

std::unique_ptr<Creature> Monsters::remove(int index, bool free)
{
    std::unique_ptr<Creature> creature = m_templates.take(index);
    if (!creature || !free)
        return creature;
    clearFlags(*creature);
    return nullptr;
}

QString Monsters::newName() const
{
    const QString name = tr("New Monster");
    if (!findGroup(name))
        return name;
    for (int number = 1;; ++number) {
        const QString numbered = tr("New Monster %1").arg(number);
        if (!findGroup(numbered))
            return numbered;
    }
}

std::unique_ptr<Creature> Monsters::newMonster() const
{
    CreatureData data;
    data.group = newName();
    data.level = 1;
    data.xp = 100;
    return fromStarterText(std::move(data));
}

const ChangeCounters &Monsters::counters() const
{
    return *m_counters;
}

Creature *Monsters::ensureTemplate(QString &group, const QString &id, bool create)
{
    const Creature *original = findGroup(group);
    if (!original && create)
        original = makeUpTemplate(group);
    if (original)
        group = original->group();
    // A clone outlives its template.
    Creature *clone = m_clones.find(cloneKey(group, id));
    if (!clone && original && create)
        clone = makeClone(original, id);
    return clone;
}

Creature *Monsters::makeUpTemplate(const QString &group)
{
    CreatureData data;
    data.group = group;
    data.missing = true;
    std::unique_ptr<Creature> creature = fromStarterText(std::move(data));
    creature->setSavedStatBlock(creature->data().statBlock);
    return at(add(std::move(creature)));
}

Creature *Monsters::makeClone(const Creature *original, const QString &id)
{
    auto clone = std::make_unique<Creature>();
    clone->copyFrom(original);
    clone->setName(id);
    readyForPlay(*clone);
    return m_clones.append(std::move(clone));
}

QList<Creature *> Monsters::clones() const
{
    return m_clones.list();
}

void Monsters::retireClone(Creature *creature)
{
    if (std::unique_ptr<Creature> clone = m_clones.take(m_clones.indexOf(creature)))
        m_retired.push_back(std::move(clone));
}

void Monsters::resetForEncounter()
{
    m_clones.clear(std::make_shared<ChangeCounters>());
    m_retired.clear();
}

void Monsters::clear()
{
    m_counters = std::make_shared<ChangeCounters>();
    m_templates.clear(m_counters);
    m_clones.clear(std::make_shared<ChangeCounters>());
    m_retired.clear();
}

void Monsters::replaceBy(Monsters &other)
{
    clear();
    std::swap(m_counters, other.m_counters);
    std::swap(m_templates, other.m_templates);
    std::swap(m_clones, other.m_clones);
    std::swap(m_retired, other.m_retired);
    Q_EMIT doTemplatesUpdated();
}

int Monsters::fileCount(const QString &dataFolder)
{
    return libraryFileCount(creaturePath(QString(), true, dataFolder));
}

LoadResult Monsters::load(const QString &dataFolder, const QString &displayFolder,
                          Progress &progress)
{
    clear();
    const PortraitSearch search;
    const auto loadFile = [&](const QString &fileName) {
        auto creature = std::make_unique<Creature>();
        if (!creature->load(fileName, true, dataFolder, m_templates.namer()))
            return false;
        m_templates.append(std::move(creature));
        return true;
    };
    const LoadResult result = loadLibraryFolder(
        folderTexts, creaturePath(QString(), true, dataFolder), displayFolder, progress, loadFile);
    m_templates.sort();
    return result;
}

void Monsters::saveAll()
{
    for (int i = count() - 1; i >= 0; --i) {
        Creature *creature = at(i);
        if (creature->isDeleted()) {
            if (removeCreatureFile(*creature, true))
                remove(i, true);
        } else {
            saveChanges(*creature);
        }
    }
}

void Monsters::revertAll()
{
    // The list itself changes under way: new entries go, renamed ones move.
    const QList<Creature *> creatures = m_templates.list();
    for (auto it = creatures.crbegin(); it != creatures.crend(); ++it) {
        Creature *creature = *it;
        creature->setDeleted(false);
        const QString oldGroup = creature->group();
        const bool isNew = creature->isNew();
        creature->revert(m_templates.namer());
        if (isNew) {
            remove(indexOf(creature), true);
        } else if (creature->group() != oldGroup) {
            m_templates.resort(creature);
            Q_EMIT doTemplateRenamed(oldGroup, creature->group());
        }
    }
}

#include "moc_monsters.cpp"
