#include "encounter.h"

#include <QHash>
#include <algorithm>
#include <tuple>

#include "creature.h"
#include "text.h"
#include "windowinterface.h"

Encounter *theEncounter = nullptr;

namespace {

// Finds a creature's entry in one of the initiative dialog's lists.
class InitiativeTable {
public:
    explicit InitiativeTable(const QList<CreatureInit> &entries) : m_entries(entries)
    {
        for (int i = int(entries.size()) - 1; i >= 0; --i)
            m_firstIndex.insert(entries[i].name, i);
    }

    // The first entry for the creature itself or for its group; 0 and 0 without one.
    CreatureItem itemFor(Creature *creature) const
    {
        const int none = int(m_entries.size());
        const int index = std::min(m_firstIndex.value(creature->displayName(), none),
                                   m_firstIndex.value(creature->group(), none));
        if (index == none)
            return {creature, 0, 0};
        return {creature, m_entries[index].roll, m_entries[index].random};
    }

private:
    const QList<CreatureInit> &m_entries;
    QHash<QString, int> m_firstIndex;
};

bool beats(const CreatureItem &a, const CreatureItem &b)
{
    const auto rank = [](const CreatureItem &item) {
        return std::tuple(item.roll, item.creature->initBonus(), item.random);
    };
    return rank(a) > rank(b);
}

} // namespace

Encounter::Encounter(QObject *parent) : QObject(parent) { }

int Encounter::nextIndex() const
{
    return count() == 0 ? 0 : int((qint64(m_currentIndex) + 1) % count());
}

EncounterPosition Encounter::position() const
{
    return {m_round, m_currentIndex, m_fallen};
}

EncounterPosition Encounter::nextPosition() const
{
    EncounterPosition next = position();
    next.currentIndex = nextIndex();
    if (next.currentIndex == 0)
        ++next.round;
    return next;
}

VisibleCreatures Encounter::playersView() const
{
    VisibleCreatures view;
    QSet<const Creature *> seen;
    const auto addKill = [&view](Creature *creature) {
        // Nobody is named for a monster that was set to 0 hit points: it is no kill.
        if (!creature->lastHitBy().isEmpty())
            view.kills.insert(creature->lastHitOrder(), creature);
    };
    for (Creature *creature : m_creatures) {
        if (creature->isHidden() || creature->isDisabled())
            continue;
        if (!creature->isMonster()) {
            view.rows.append(creature);
        } else if (isRunning()) {
            if (!creature->isDead(true)) {
                view.rows.append(creature);
            } else {
                addKill(creature);
                seen.insert(creature);
            }
        }
    }
    if (isRunning()) {
        for (Creature *creature : m_fallen) {
            if (!creature->isHidden() && !creature->isDisabled() && creature->isMonster()
                && creature->isDead() && !seen.contains(creature))
                addKill(creature);
        }
    }
    return view;
}

int Encounter::indexBeforeCurrent(int from, int current)
{
    return from < current ? current - 1 : current;
}

int Encounter::indexAfterCurrent(int from, int current)
{
    return from > current ? current + 1 : current;
}

InitiativeOrder Encounter::buildOrder(const QList<CreatureInit> &characters,
                                      const QList<CreatureInit> &monsters) const
{
    const InitiativeTable characterTable(characters);
    const InitiativeTable monsterTable(monsters);
    InitiativeOrder result;
    for (Creature *creature : m_creatures) {
        result.oldItems.append(creature->item());
        result.newItems.append(
            (creature->isMonster() ? monsterTable : characterTable).itemFor(creature));
    }
    QList<CreatureItem> ranked = result.newItems;
    std::stable_sort(ranked.begin(), ranked.end(), beats);
    QList<Creature *> order;
    for (const CreatureItem &item : std::as_const(ranked))
        order.append(item.creature);
    result.order = CreatureList(order);
    return result;
}

void Encounter::setOrder(const CreatureList &order)
{
    m_creatures = order;
    Q_EMIT doCurrentCreatureChanged();
    Q_EMIT doCreatureCountChanged();
}

void Encounter::setPosition(const EncounterPosition &position)
{
    m_round = position.round;
    m_currentIndex = position.currentIndex;
    m_fallen = position.fallen;
    updateRoundText();
    Q_EMIT doCurrentCreatureChanged();
}

void Encounter::setCurrentIndex(int index)
{
    m_currentIndex = index;
    Q_EMIT doCurrentCreatureChanged();
}

void Encounter::setEntry(const EncounterEntry &entry)
{
    m_entry.name = entry.name;
    m_entry.description = entry.description;
    m_entry.level = entry.level;
    m_entry.xp = entry.xp;
    updateRoundText();
    updateEncounterText();
}

void Encounter::remove(const QList<Creature *> &creatures)
{
    for (Creature *creature : creatures)
        removeOne(creature);
    Q_EMIT doCurrentCreatureChanged();
    Q_EMIT doCreatureCountChanged();
}

void Encounter::remove(Creature *creature)
{
    remove(QList<Creature *> {creature});
}

void Encounter::removeOne(Creature *creature)
{
    const int index = indexOf(creature);
    if (index < 0)
        return;
    m_creatures.removeAt(index);
    if (index == m_currentIndex && index == 0) {
        // The next turn is index 0 of this round again.
        m_currentIndex = count() - 1;
        --m_round;
        updateRoundText();
    } else if (index <= m_currentIndex) {
        --m_currentIndex;
    }
    if (isRunning() && creature->isDead())
        m_fallen.insert(creature);
}

void Encounter::insert(int index, Creature *creature)
{
    m_creatures.insertAt(index, creature);
    Q_EMIT doCurrentCreatureChanged();
    Q_EMIT doCreatureCountChanged();
}

void Encounter::insertSorted(Creature *creature)
{
    m_creatures.insertSorted(creature);
    Q_EMIT doCurrentCreatureChanged();
    Q_EMIT doCreatureCountChanged();
}

void Encounter::move(int from, int to)
{
    if (from < 0 || to < 0 || from == to)
        return;
    m_creatures.move(from, to);
    Q_EMIT doCreatureCountChanged();
}

void Encounter::adjustInitiative(const QList<Creature *> &creatures, int delta)
{
    if (count() == 0)
        return;
    const Creature *remembered = current();
    const int forward = (delta % count() + count()) % count();
    QMap<int, Creature *> targets;
    for (Creature *creature : creatures) {
        const int index = indexOf(creature);
        if (index >= 0)
            targets.insert((index + forward) % count(), creature);
    }
    for (auto target = targets.cbegin(); target != targets.cend(); ++target)
        m_creatures.swap(indexOf(target.value()), target.key());
    m_currentIndex = indexOf(remembered);
    Q_EMIT doCurrentCreatureChanged();
    Q_EMIT doCreatureCountChanged();
}

void Encounter::reset()
{
    m_entry = {};
    m_round = 0;
    m_currentIndex = -1;
    m_creatures.clear();
    // What fell is about to go with the creatures of the fight.
    m_fallen.clear();
    updateRoundText();
    updateEncounterText();
    windows().refreshEncounterActions();
    Q_EMIT doCurrentCreatureChanged();
    Q_EMIT doCreatureCountChanged();
}

void Encounter::updateRoundText() const
{
    const bool hasRound = m_round >= 1 && m_currentIndex >= 0;
    windows().setRoundText(hasRound ? tr("<b>Round</b> %1").arg(m_round) : QString());
}

void Encounter::updateEncounterText() const
{
    windows().setEncounterText(
        name().isEmpty() ? QString() : tr("<b> Encounter</b> %1").arg(asHtml(name(), LongestName)));
}

#include "moc_encounter.cpp"
