#include "turnevents.h"

#include "creature.h"
#include "encounter.h"
#include "windowinterface.h"

namespace {

bool isShown(const Creature *creature)
{
    return creature && !creature->isHidden();
}

void changeTurnCount(Creature *creature, int delta)
{
    if (creature)
        creature->setTurnCount(creature->turnCount() + delta);
}

} // namespace

// --- CreatureEvent ---

CreatureEvent::CreatureEvent(EventType::Code type, int endTag, Creature *creature,
                             const EventRecord &record)
    : Event(type, record), m_creature(creature)
{
    record.field(m_creature);
    close(record, endTag);
    m_visible = isCharacter(m_creature);
}

// --- StartEncounterEvent ---

StartEncounterEvent::StartEncounterEvent(QList<CreatureInit> characters,
                                         QList<CreatureInit> monsters, const EventRecord &record)
    : Event(EventType::StartEncounter, record), m_oldOrder(theEncounter->creatures()),
      m_oldVitality(vitalityBefore(m_oldOrder)), m_newVitality(m_oldVitality.live)
{
    record.field(characters);
    record.field(monsters);
    record.field(m_newVitality);
    close(record, ID_START_ENCOUNTER_EVENT_END);
    const InitiativeOrder built = theEncounter->buildOrder(characters, monsters);
    m_oldItems = built.oldItems;
    m_newOrder = built.order;
    m_newItems = built.newItems;
    applyItems(m_newItems);
    m_first = m_newOrder.at(0);
}

QString StartEncounterEvent::text() const
{
    return tr("* Start Encounter: %1 *").arg(displayNameOf(m_first));
}

void StartEncounterEvent::redo()
{
    theEncounter->setOrder(m_newOrder);
    theEncounter->setPosition({1, 0, {}});
    applyVitality(m_newVitality);
    applyItems(m_newItems);
    windows().refreshEncounterActions();
}

void StartEncounterEvent::undo()
{
    theEncounter->setOrder(m_oldOrder);
    theEncounter->setPosition({0, -1, {}});
    restoreVitality(m_oldVitality);
    restoreItems(m_oldItems);
    windows().refreshEncounterActions();
}

// --- NextTurnEvent ---

NextTurnEvent::NextTurnEvent(const EventRecord &record)
    : Event(EventType::NextTurn, record), m_position(theEncounter->position()),
      m_next(theEncounter->next()), m_nextWasReadied(m_next && m_next->isReadied())
{
    close(record, ID_NEXT_TURN_EVENT_END);
    m_visible = isShown(m_next);
}

QString NextTurnEvent::text() const
{
    return tr("* Next Turn: %1 *").arg(displayNameOf(m_next));
}

void NextTurnEvent::redo()
{
    if (!theEncounter->current())
        return;
    changeTurnCount(theEncounter->current(), 1);
    theEncounter->setPosition(theEncounter->nextPosition());
    if (Creature *current = theEncounter->current())
        current->setReadied(false);
}

void NextTurnEvent::undo()
{
    if (Creature *current = theEncounter->current())
        current->setReadied(m_nextWasReadied);
    theEncounter->setPosition(m_position);
    changeTurnCount(theEncounter->current(), -1);
}

// --- StopEncounterEvent ---

StopEncounterEvent::StopEncounterEvent(const EventRecord &record)
    : ChangeStateEvent(EventType::StopEncounter, record), m_position(theEncounter->position())
{
    close(record, ID_STOP_ENCOUNTER_EVENT_END);
    init(nullptr, theEncounter->creatures().list());
}

QString StopEncounterEvent::text() const
{
    return tr("* Stop Encounter *");
}

void StopEncounterEvent::redo()
{
    for (Creature *target : m_targets)
        target->stopEncounter();
    theEncounter->setPosition({theEncounter->round(), -1, theEncounter->fallen()});
    windows().refreshEncounterActions();
}

void StopEncounterEvent::undo()
{
    ChangeStateEvent::undo();
    theEncounter->setPosition(m_position);
    windows().refreshEncounterActions();
}

// --- DelayEvent ---

DelayEvent::DelayEvent(Creature *creature, const EventRecord &record)
    : CreatureEvent(EventType::Delay, ID_DELAY_EVENT_END, creature, record)
{
}

QString DelayEvent::text() const
{
    return tr("* Delayed: %1 *").arg(displayNameOf(m_creature));
}

void DelayEvent::redo()
{
    if (m_creature)
        m_creature->setDelayed(true);
}

void DelayEvent::undo()
{
    if (m_creature)
        m_creature->setDelayed(false);
}

// --- ReadyEvent ---

ReadyEvent::ReadyEvent(Creature *creature, const EventRecord &record)
    : CreatureEvent(EventType::Ready, ID_READY_EVENT_END, creature, record)
{
}

QString ReadyEvent::text() const
{
    return tr("* Ready: %1 *").arg(displayNameOf(m_creature));
}

void ReadyEvent::redo()
{
    if (m_creature)
        m_creature->setReadied(true);
}

void ReadyEvent::undo()
{
    if (m_creature)
        m_creature->setReadied(false);
}

// --- EndReadyEvent ---

EndReadyEvent::EndReadyEvent(Creature *creature, const EventRecord &record)
    : CreatureEvent(EventType::EndReady, ID_END_READY_EVENT_END, creature, record),
      m_current(theEncounter->current()), m_fromIndex(theEncounter->indexOf(m_creature)),
      m_toIndex(Encounter::indexBeforeCurrent(m_fromIndex, theEncounter->currentIndex()))
{
}

QString EndReadyEvent::text() const
{
    return tr("* Ready action: %1 *").arg(displayNameOf(m_creature));
}

void EndReadyEvent::redo()
{
    if (!m_creature || !m_current)
        return;
    theEncounter->move(m_fromIndex, m_toIndex);
    theEncounter->setCurrentIndex(theEncounter->indexOf(m_current));
    m_creature->setReadied(false);
}

void EndReadyEvent::undo()
{
    if (!m_creature || !m_current)
        return;
    m_creature->setReadied(true);
    theEncounter->move(m_toIndex, m_fromIndex);
    theEncounter->setCurrentIndex(theEncounter->indexOf(m_current));
}

// --- JumpInEvent ---

JumpInEvent::JumpInEvent(Creature *creature, const EventRecord &record)
    : CreatureEvent(EventType::JumpIn, ID_JUMPIN_EVENT_END, creature, record),
      m_fromIndex(theEncounter->indexOf(m_creature)),
      m_toIndex(Encounter::indexAfterCurrent(m_fromIndex, theEncounter->currentIndex())),
      m_position(theEncounter->position())
{
}

QString JumpInEvent::text() const
{
    return tr("* Jump in: %1 *").arg(displayNameOf(m_creature));
}

void JumpInEvent::redo()
{
    if (!m_creature || !theEncounter->current())
        return;
    changeTurnCount(theEncounter->current(), 1);
    theEncounter->move(m_fromIndex, m_toIndex);
    EncounterPosition position = m_position;
    if (m_toIndex == 0)
        ++position.round;
    position.currentIndex = m_toIndex;
    theEncounter->setPosition(position);
    m_creature->setDelayed(false);
}

void JumpInEvent::undo()
{
    if (!m_creature)
        return;
    m_creature->setDelayed(true);
    theEncounter->setPosition(m_position);
    // Without a current creature redo() moved nobody. Only after the move is current() the creature
    // whose turn it was.
    if (!theEncounter->current())
        return;
    theEncounter->move(m_toIndex, m_fromIndex);
    changeTurnCount(theEncounter->current(), -1);
}

// --- DiedEvent ---

DiedEvent::DiedEvent(Creature *creature, const EventRecord &record)
    : CreatureEvent(EventType::Died, ID_DIED_EVENT_END, creature, record),
      m_before(EncounterSnapshot::take())
{
    m_visible = isShown(m_creature);
}

QString DiedEvent::text() const
{
    return tr("Died: %1").arg(displayNameOf(m_creature));
}

void DiedEvent::redo()
{
    if (m_creature)
        theEncounter->remove(m_creature);
    refreshTurnActions();
}

void DiedEvent::undo()
{
    m_before.restore();
    refreshTurnActions();
}

#include "moc_turnevents.cpp"
