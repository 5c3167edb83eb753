#include "monsters.h"

#include <QFile>
#include <QFileInfo>

#include "creaturefile.h"
#include "creatureportrait.h"
#include "creaturetext.h"
#include "libraryfolder.h"
#include "paths.h"

Monsters *theMonsters = nullptr;

namespace {

constexpr LibraryFolder monstersFolder {
    [](const QString &dataFolder) { return creaturePath(QString(), true, dataFolder); },
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

std::unique_ptr<Creature> fromStarterText(CreatureData data)
{
    data.statBlock = textOf(data);
    auto creature = std::make_unique<Creature>();
    creature->assign(data);
    creature->readyForPlay();
    return creature;
}

} // namespace

Monsters::Monsters(QObject *parent)
    : QObject(parent), Collection(templateKey, monstersFolder),
      m_madeUp(templateKey, std::make_shared<ChangeCounters>()),
      m_clones(keyOfClone, std::make_shared<ChangeCounters>())
{
}

Monsters::~Monsters() = default;

Creature *Monsters::findGroup(const QString &group) const
{
    return m_entries.find(group);
}

NameState Monsters::nameState(const QString &group, const Creature *except) const
{
    return nameStateOf(m_entries.find(group, except));
}

Creature *Monsters::findTemplate(const QString &group) const
{
    Creature *creature = findGroup(group);
    return creature ? creature : m_madeUp.find(group);
}

QString Monsters::uniqueGroup(const QString &group, const Creature *except) const
{
    return m_entries.uniqueKey(group, except);
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

Creature *Monsters::takeFile(const QString &path)
{
    const QString fileName = QFileInfo(path).fileName();
    for (Creature *creature : m_entries.list()) {
        if (creature->fileName().compare(fileName, Qt::CaseInsensitive) == 0) {
            creature->setDeleted(false);
            return creature;
        }
    }
    const QString target = creaturePath(fileName, true);
    const bool isCopied = !dataReadOnly && QFile::copy(path, target);
    if (std::unique_ptr<Creature> creature = read(fileName, QString())) {
        Creature *added = at(add(std::move(creature)));
        Q_EMIT doXpChanged();
        return added;
    }
    if (isCopied)
        QFile::remove(target);
    return nullptr;
}

std::unique_ptr<Creature> Monsters::remove(int index, bool free)
{
    std::unique_ptr<Creature> creature = m_entries.take(index);
    if (!creature || !free)
        return creature;
    clearFlags(*creature);
    return nullptr;
}

QString Monsters::newName() const
{
    return freeName(tr("New Monster"),
                    [this](const QString &name) { return findGroup(name) != nullptr; });
}

std::unique_ptr<Creature> Monsters::newMonster() const
{
    CreatureData data;
    data.group = newName();
    data.level = 1;
    data.xp = 100;
    return fromStarterText(std::move(data));
}

Creature *Monsters::ensureTemplate(QString &group, const QString &id, bool create)
{
    const Creature *original = findTemplate(group);
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
    return m_madeUp.append(fromStarterText(std::move(data)));
}

Creature *Monsters::makeClone(const Creature *original, const QString &id)
{
    auto clone = std::make_unique<Creature>();
    clone->copyFrom(original);
    clone->setName(id);
    clone->readyForPlay();
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
    m_madeUp.clear(std::make_shared<ChangeCounters>());
    m_retired.clear();
}

void Monsters::clear()
{
    Collection::clear();
    resetForEncounter();
}

void Monsters::replaceBy(Monsters &other)
{
    clear();
    swapWith(other);
    std::swap(m_madeUp, other.m_madeUp);
    std::swap(m_clones, other.m_clones);
    std::swap(m_retired, other.m_retired);
    Q_EMIT doTemplatesUpdated();
}

int Monsters::fileCount(const QString &dataFolder)
{
    return libraryFileCount(monstersFolder, dataFolder);
}

std::unique_ptr<Creature> Monsters::read(const QString &fileName, const QString &dataFolder)
{
    auto creature = std::make_unique<Creature>();
    if (!creature->load(fileName, true, dataFolder, m_entries.namer()))
        return nullptr;
    return creature;
}

bool Monsters::save(Creature &creature)
{
    return creature.save();
}

bool Monsters::removeFile(Creature &creature)
{
    return removeCreatureFile(creature, true);
}

void Monsters::saveAll()
{
    Collection::saveAll();
    Q_EMIT doXpChanged();
}

void Monsters::revertAll()
{
    Collection::revertAll();
    Q_EMIT doXpChanged();
}

void Monsters::revert(Creature *creature)
{
    const bool hasText = creature->isModified() && !creature->isNew();
    const QString oldGroup = creature->group();
    creature->revert();
    if (!hasText)
        return;
    // A template stands in no fight.
    creature->readyForPlay();
    m_reverted.add(creature, oldGroup);
}

void Monsters::settleNames()
{
    const QList<Renamed> renamed = m_reverted.settle(m_entries, &Creature::setGroup);
    if (!renamed.isEmpty())
        Q_EMIT doTemplatesRenamed(renamed);
}

#include "moc_monsters.cpp"
