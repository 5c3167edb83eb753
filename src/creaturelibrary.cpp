#include "creaturelibrary.h"

#include <QFile>
#include <algorithm>

#include "paths.h"

CreatureLibrary::CreatureLibrary(Key key, std::shared_ptr<ChangeCounters> counters)
    : m_key(key), m_counters(std::move(counters)), m_indexedChanges(m_counters->nameChanges)
{
}

void CreatureLibrary::clear(std::shared_ptr<ChangeCounters> counters)
{
    m_index.clear();
    m_nextNumbers.clear();
    m_creatures.clear();
    m_counters = std::move(counters);
    m_indexedChanges = m_counters->nameChanges;
}

Creature *CreatureLibrary::at(int index) const
{
    return index >= 0 && index < count() ? m_creatures[std::size_t(index)].get() : nullptr;
}

int CreatureLibrary::indexOf(const Creature *creature) const
{
    for (int i = 0; i < count(); ++i) {
        if (m_creatures[std::size_t(i)].get() == creature)
            return i;
    }
    return -1;
}

QList<Creature *> CreatureLibrary::list() const
{
    QList<Creature *> result;
    result.reserve(count());
    for (const auto &creature : m_creatures)
        result.append(creature.get());
    return result;
}

Creature *CreatureLibrary::find(const QString &key, const Creature *except) const
{
    // Full case folding makes more names equal than a comparison does, so each is compared too.
    const QList<Creature *> candidates = index().value(key.toCaseFolded());
    for (Creature *creature : candidates) {
        if (creature != except && m_key(*creature).compare(key, Qt::CaseInsensitive) == 0)
            return creature;
    }
    return nullptr;
}

QString CreatureLibrary::uniqueKey(const QString &key, const Creature *except) const
{
    if (!find(key, except))
        return key;
    index(); // may forget the numbers
    const QString stem = key.toCaseFolded();
    int number = except ? 2 : m_nextNumbers.value(stem, 2);
    QString candidate = QStringLiteral("%1 %2").arg(key, QString::number(number));
    while (find(candidate, except))
        candidate = QStringLiteral("%1 %2").arg(key, QString::number(++number));
    if (!except)
        m_nextNumbers.insert(stem, number);
    return candidate;
}

UniqueName CreatureLibrary::namer() const
{
    return [this](const QString &key, const Creature *self) { return uniqueKey(key, self); };
}

int CreatureLibrary::insertionIndex(const QString &key, int exceptIndex) const
{
    const auto sortsAfter = [this](const QString &name, const std::unique_ptr<Creature> &creature) {
        return name.compare(m_key(*creature), Qt::CaseInsensitive) < 0;
    };
    const auto search = [&](auto first, auto last) {
        return std::upper_bound(first, last, key, sortsAfter);
    };
    const auto begin = m_creatures.begin();
    const auto end = m_creatures.end();
    if (exceptIndex < 0 || exceptIndex >= count())
        return int(search(begin, end) - begin);
    const auto except = begin + exceptIndex;
    const auto before = search(begin, except);
    return int((before != except ? before : search(except + 1, end)) - begin);
}

int CreatureLibrary::add(std::unique_ptr<Creature> creature)
{
    const int position = insertionIndex(m_key(*creature));
    adopt(creature.get());
    m_creatures.insert(m_creatures.begin() + position, std::move(creature));
    return position;
}

Creature *CreatureLibrary::append(std::unique_ptr<Creature> creature)
{
    adopt(creature.get());
    m_creatures.push_back(std::move(creature));
    return m_creatures.back().get();
}

void CreatureLibrary::sort()
{
    std::stable_sort(m_creatures.begin(), m_creatures.end(), [this](const auto &a, const auto &b) {
        return m_key(*a).compare(m_key(*b), Qt::CaseInsensitive) < 0;
    });
}

std::unique_ptr<Creature> CreatureLibrary::take(int index)
{
    if (!at(index))
        return nullptr;
    const auto place = m_creatures.begin() + index;
    std::unique_ptr<Creature> creature = std::move(*place);
    m_creatures.erase(place);
    this->index(); // the creature stands under its present name now
    const auto entry = m_index.find(m_key(*creature).toCaseFolded());
    if (entry != m_index.end()) {
        entry->removeOne(creature.get());
        if (entry->isEmpty())
            m_index.erase(entry);
    }
    m_nextNumbers.clear();
    return creature;
}

void CreatureLibrary::resort(Creature *creature)
{
    const int position = indexOf(creature);
    if (position >= 0)
        add(take(position));
}

void CreatureLibrary::removeUnless(bool (*stays)(const Creature &))
{
    std::erase_if(m_creatures, [stays](const auto &creature) { return !stays(*creature); });
    ++m_counters->nameChanges;
}

void CreatureLibrary::adopt(Creature *creature)
{
    index(); // brought up to date before the newcomer stands in the list
    creature->setChangeCounters(m_counters.get());
    m_index[m_key(*creature).toCaseFolded()].append(creature);
}

const CreatureLibrary::Index &CreatureLibrary::index() const
{
    if (m_indexedChanges != m_counters->nameChanges) {
        m_indexedChanges = m_counters->nameChanges;
        m_index.clear();
        m_nextNumbers.clear();
        for (const auto &creature : m_creatures)
            m_index[m_key(*creature).toCaseFolded()].append(creature.get());
    }
    return m_index;
}

void saveChanges(Creature &creature)
{
    if ((creature.isNew() || creature.isModified()) && creature.save())
        clearFlags(creature);
}

bool removeCreatureFile(const Creature &creature, bool isMonster)
{
    if (creature.fileName().isEmpty())
        return true;
    const QString path = creaturePath(creature.fileName(), isMonster);
    return !QFile::exists(path) || (!dataReadOnly && QFile::remove(path));
}

void clearFlags(Creature &creature)
{
    creature.setNew(false);
    creature.setModified(false);
    creature.setDeleted(false);
}
