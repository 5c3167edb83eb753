#include "creaturelist.h"

#include <algorithm>

#include "creature.h"
#include "text.h"

namespace {

bool sortsBefore(const Creature *a, const Creature *b)
{
    const int byGroup = a->group().compare(b->group(), Qt::CaseInsensitive);
    return byGroup != 0 ? byGroup < 0 : naturalCompare(a->name(), b->name()) < 0;
}

// What insertSorted() would give one by one, without its cost for a long list.
template <typename Record>
QList<Creature *> sortedCreatures(const QList<Record> &records)
{
    QList<Creature *> result;
    result.reserve(records.size());
    for (const Record &record : records) {
        if (record.creature)
            result.append(record.creature);
    }
    std::stable_sort(result.begin(), result.end(), sortsBefore);
    return result;
}

} // namespace

CreatureList::CreatureList(const QList<Creature *> &creatures) : m_creatures(creatures)
{
    // A damaged log may name creatures that nobody has.
    if (m_creatures.contains(nullptr))
        m_creatures.removeAll(nullptr);
}

CreatureList::CreatureList(const QList<CreatureItem> &items) : m_creatures(sortedCreatures(items))
{
}

CreatureList::CreatureList(const QList<CreatureVitality> &vitality)
    : m_creatures(sortedCreatures(vitality))
{
}

int CreatureList::monsterCount() const
{
    return int(std::count_if(begin(), end(), [](const Creature *c) { return c->isMonster(); }));
}

Creature *CreatureList::at(int index) const
{
    return m_creatures.value(index);
}

int CreatureList::indexOf(const Creature *creature) const
{
    const auto found = std::find(begin(), end(), creature);
    return found == end() ? -1 : int(found - begin());
}

bool CreatureList::containsLivingCharacter() const
{
    return std::any_of(begin(), end(),
                       [](const Creature *c) { return !c->isMonster() && !c->isDead(); });
}

CreatureList CreatureList::filtered(int mode) const
{
    CreatureList result;
    for (Creature *creature : m_creatures) {
        if (mode & (creature->isMonster() ? Monsters : Characters))
            result.m_creatures.append(creature);
    }
    return result;
}

QString CreatureList::names() const
{
    return displayNames(m_creatures);
}

void CreatureList::setHidden(bool hidden)
{
    for (Creature *creature : std::as_const(m_creatures))
        creature->setHidden(hidden);
}

void CreatureList::removeAt(int index)
{
    if (index >= 0 && index < count())
        m_creatures.removeAt(index);
}

void CreatureList::removeKind(bool isMonster)
{
    m_creatures.removeIf([isMonster](const Creature *c) { return c->isMonster() == isMonster; });
}

void CreatureList::insertSorted(Creature *creature)
{
    if (!creature)
        return;
    // The list needn't be sorted, so the place can't be found by halving.
    const auto place = std::find_if(
        begin(), end(), [creature](const Creature *other) { return sortsBefore(creature, other); });
    m_creatures.insert(place, creature);
}

void CreatureList::insertAt(int index, Creature *creature)
{
    if (creature)
        m_creatures.insert(std::clamp(index, 0, count()), creature);
}

void CreatureList::insertList(int index, const CreatureList &list)
{
    const int place = std::clamp(index, 0, count());
    m_creatures = m_creatures.first(place) + list.m_creatures + m_creatures.sliced(place);
}

void CreatureList::move(int from, int to)
{
    if (from < 0 || to < 0 || from == to || from >= count())
        return;
    m_creatures.move(from, std::min(to, count() - 1));
}

void CreatureList::swap(int a, int b)
{
    if (a >= 0 && b >= 0 && a < count() && b < count())
        m_creatures.swapItemsAt(a, b);
}

QString displayNames(const QList<Creature *> &creatures)
{
    QStringList names;
    names.reserve(creatures.size());
    for (const Creature *creature : creatures) {
        if (creature)
            names.append(creature->displayName());
    }
    return names.join(QLatin1String(", "));
}
