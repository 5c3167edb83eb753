#include "characters.h"

#include <algorithm>

#include "creaturefile.h"
#include "creatureportrait.h"
#include "creaturetext.h"
#include "encounter.h"
#include "libraryfolder.h"
#include "paths.h"
#include "switchboard.h"

Characters *theCharacters = nullptr;

namespace {

constexpr LibraryFolder charactersFolder {
    [](const QString &dataFolder) { return creaturePath(QString(), false, dataFolder); },
    QT_TRANSLATE_NOOP("LibraryFolder", "Loading characters..."),
    QT_TRANSLATE_NOOP("LibraryFolder", "Directory <b>Characters</b> not found in %1."),
    QT_TRANSLATE_NOOP("LibraryFolder", "No Characters Found"),
    QT_TRANSLATE_NOOP("LibraryFolder",
                      "No characters could be loaded from <b>Characters</b> directory in %1."),
};

QString characterKey(const Creature &creature)
{
    return creature.name();
}

std::unique_ptr<Creature> readyCharacter(const CreatureData &data)
{
    auto creature = std::make_unique<Creature>();
    creature->assign(data);
    creature->readyForPlay();
    return creature;
}

} // namespace

Characters::Characters(QObject *parent)
    : QObject(parent), Collection(characterKey, charactersFolder),
      m_deleted(characterKey, m_counters), m_gone(characterKey, std::make_shared<ChangeCounters>()),
      m_standIns(characterKey, std::make_shared<ChangeCounters>())
{
}

Characters::~Characters() = default;

Creature *Characters::find(const QString &name, const Creature *except) const
{
    if (Creature *creature = m_entries.find(name, except))
        return creature;
    Creature *deleted = m_deleted.find(name, except);
    return deleted && deleted->isDeleted() ? deleted : nullptr;
}

NameState Characters::nameState(const QString &name, const Creature *except) const
{
    if (const Creature *holder = find(name, except))
        return nameStateOf(holder);
    const QList<Creature *> entries = m_entries.list();
    const auto isInText = [&](const Creature *entry) {
        return entry != except && entry->nameInText().compare(name, Qt::CaseInsensitive) == 0;
    };
    return std::any_of(entries.begin(), entries.end(), isInText) ? NameState::Taken
                                                                 : NameState::Free;
}

QString Characters::uniqueName(const QString &name, const Creature *except) const
{
    QString unique = m_entries.uniqueKey(name, except);
    for (int number = 2; find(unique, except); ++number)
        unique = QStringLiteral("%1 %2").arg(name, QString::number(number));
    return unique;
}

std::unique_ptr<Creature> Characters::remove(int index, bool free)
{
    std::unique_ptr<Creature> creature = m_entries.take(index);
    if (!creature || !free)
        return creature;
    if (creature->isDeleted()) {
        m_deleted.append(std::move(creature));
    } else {
        clearFlags(*creature);
        m_gone.append(std::move(creature));
    }
    return nullptr;
}

QString Characters::newName() const
{
    return freeName(tr("New Character"), [this](const QString &name) {
        // One who went in mid-fight still fights, and the log knows both by their names.
        const Creature *gone = m_gone.find(name);
        return find(name) || (gone && theEncounter && theEncounter->contains(gone));
    });
}

std::unique_ptr<Creature> Characters::newCharacter() const
{
    CreatureData data;
    data.isMonster = false;
    data.name = newName();
    data.level = 1;
    data.initAP = 1;
    data.statBlock = textOf(data);
    return readyCharacter(data);
}

Creature *Characters::ensureCharacter(const QString &name, bool create)
{
    for (const LibraryList<Creature> *library : {&m_entries, &m_deleted, &m_gone, &m_standIns}) {
        if (Creature *creature = library->find(name))
            return creature;
    }
    return create ? makeStandIn(name) : nullptr;
}

Creature *Characters::makeStandIn(const QString &name)
{
    CreatureData data;
    data.isMonster = false;
    data.name = name;
    data.missing = true;
    return m_standIns.append(readyCharacter(data));
}

void Characters::replaceByStandIn(Creature *character, Creature *standIn)
{
    std::unique_ptr<Creature> replaced = m_entries.take(m_entries.indexOf(character));
    std::unique_ptr<Creature> successor = m_standIns.take(m_standIns.indexOf(standIn));
    if (replaced) {
        clearFlags(*replaced);
        m_retired.push_back(std::move(replaced));
    }
    if (successor) {
        // So far its flags were counted among the stand-ins.
        clearFlags(*successor);
        successor->setName(character->name());
        m_entries.add(std::move(successor));
    }
}

QList<Creature *> Characters::all() const
{
    return m_entries.list() + m_standIns.list();
}

void Characters::resetForEncounter()
{
    const PortraitSearch search;
    for (Creature *creature : m_entries.list())
        creature->resetForEncounter(m_entries.namer());
    m_entries.sort();
    m_gone.clear(std::make_shared<ChangeCounters>());
    m_standIns.clear(std::make_shared<ChangeCounters>());
    m_retired.clear();
}

void Characters::clear()
{
    Collection::clear();
    m_deleted.clear(m_counters);
    m_gone.clear(std::make_shared<ChangeCounters>());
    m_standIns.clear(std::make_shared<ChangeCounters>());
    m_retired.clear();
}

void Characters::replaceBy(Characters &other)
{
    clear();
    swapWith(other);
    std::swap(m_deleted, other.m_deleted);
    std::swap(m_gone, other.m_gone);
    std::swap(m_standIns, other.m_standIns);
    std::swap(m_retired, other.m_retired);
    Q_EMIT doCharactersUpdated();
}

int Characters::fileCount(const QString &dataFolder)
{
    return libraryFileCount(charactersFolder, dataFolder);
}

std::unique_ptr<Creature> Characters::read(const QString &fileName, const QString &dataFolder)
{
    auto creature = std::make_unique<Creature>();
    if (!creature->load(fileName, false, dataFolder, m_entries.namer()))
        return nullptr;
    return creature;
}

bool Characters::save(Creature &creature)
{
    return creature.save();
}

bool Characters::removeFile(Creature &creature)
{
    return removeCreatureFile(creature, false);
}

void Characters::saveAll()
{
    // A deleted one leaves the entries also when its file can't be removed yet.
    for (int i = count() - 1; i >= 0; --i) {
        if (at(i)->isDeleted())
            discard(i);
    }
    Collection::saveAll();
    for (int i = m_deleted.count() - 1; i >= 0; --i) {
        if (!removeFile(*m_deleted.at(i)))
            continue;
        std::unique_ptr<Creature> creature = m_deleted.take(i);
        clearFlags(*creature);
        m_gone.append(std::move(creature));
    }
}

void Characters::revertAll()
{
    restoreDeleted();
    Collection::revertAll();
    Q_EMIT switchBoard()->doTellHistory();
}

void Characters::revert(Creature *creature)
{
    const bool hasText = creature->isModified() && !creature->isNew();
    const QString oldName = creature->name();
    creature->revert();
    if (hasText)
        m_reverted.add(creature, oldName);
}

void Characters::settleNames()
{
    m_reverted.settle(m_entries, &Creature::setName);
}

void Characters::discard(int index)
{
    remove(index, true);
}

void Characters::addDeletedNames(QStringList &names) const
{
    addChangedNames(m_deleted, names);
}

void Characters::restoreDeleted()
{
    for (int i = m_deleted.count() - 1; i >= 0; --i) {
        Creature *creature = m_deleted.at(i);
        if (creature->isDeleted()) {
            creature->setDeleted(false);
            add(m_deleted.take(i));
        }
    }
}

#include "moc_characters.cpp"
