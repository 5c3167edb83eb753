#include "rosterevents.h"

#include <QCoreApplication>
#include <algorithm>

#include "characters.h"
#include "creature.h"
#include "encounter.h"
#include "findcreature.h"
#include "monsters.h"
#include "windowinterface.h"

namespace {

QString hiddenSuffix(bool hidden)
{
    return hidden ? QCoreApplication::translate("AddCreaturesEvent", " (Hidden)") : QString();
}

// A reader sorts what it finds in the record. A writer does so too, so that a replay gives the
// order of the fight.
CreatureList sorted(const CreatureList &list)
{
    return CreatureList(itemsOf(list));
}

CreatureList hiddenOf(const CreatureList &list)
{
    QList<Creature *> hidden;
    std::copy_if(list.begin(), list.end(), std::back_inserter(hidden),
                 [](const Creature *creature) { return creature->isHidden(); });
    return CreatureList(hidden);
}

// A character can be hidden when it leaves the party, and is so again when its return is undone.
void restoreHidden(CreatureList all, CreatureList hidden)
{
    all.setHidden(false);
    hidden.setHidden(true);
}

// The name that the creature has of its own in such a display name: all of a character's, and of a
// monster's "Group (Name)" the part in brackets.
QString ownName(const Creature &creature, const QString &displayName)
{
    if (!creature.isMonster())
        return displayName;
    const QString group = creature.group() + QStringLiteral(" (");
    const bool hasGroup = displayName.startsWith(group, Qt::CaseInsensitive);
    const qsizetype bracket = displayName.indexOf(QStringLiteral(" ("));
    if (!hasGroup && bracket < 0)
        return displayName;
    QString name = displayName.mid(hasGroup ? group.size() : bracket + 2);
    if (name.endsWith(u')'))
        name.chop(1);
    return name;
}

} // namespace

// --- AddCreaturesEvent ---

AddCreaturesEvent::AddCreaturesEvent(EventType::Code type, const QString &name,
                                     const CreatureList &list, bool hidden,
                                     const QList<CreatureItem> &oldItems, const EventRecord &record)
    : ChangeStateEvent(type, record), m_name(name), m_hidden(hidden), m_added(sorted(list)),
      m_newItems(itemsOf(m_added)), m_oldItems(oldItems), m_newVitality(liveVitality(m_added)),
      m_oldOrder(theEncounter->creatures())
{
    record.field(ID_ADD_CREATURE_EVENT_NAME, m_name);
    record.field(ID_ADD_CREATURE_EVENT_HIDDEN, m_hidden);
    if (record.has(ID_CREATURE_ITEM_LIST_SIZE))
        record.field(m_newItems);
    record.field(m_newVitality);
    close(record, ID_ADD_CREATURE_EVENT_END);
    m_added = CreatureList(m_newItems);
    if (record.isReading()) {
        m_oldItems = itemsOf(m_added);
        applyItems(m_newItems);
    }
    m_newItems = itemsOf(m_added);
    m_hiddenBefore = hiddenOf(m_added);
    m_oldVitality = vitalityBefore(m_oldOrder);
    m_newOrder = m_oldOrder;
    const bool monsters = type == EventType::AddMonster || type == EventType::AddMonsters;
    int place = 0;
    if (theEncounter->isRunning())
        place = theEncounter->currentIndex() + 1;
    else if (monsters)
        place = m_newOrder.count();
    m_newOrder.insertList(place, m_added);
    init(nullptr, m_added.list());
}

QString AddCreaturesEvent::suffix() const
{
    return hiddenSuffix(m_hidden);
}

QString AddCreaturesEvent::names() const
{
    return PlayersNames::areUsed() ? m_added.names() : m_name;
}

void AddCreaturesEvent::redo()
{
    m_added.setHidden(m_hidden);
    theEncounter->setOrder(m_newOrder);
    applyVitality(m_newVitality);
    applyItems(m_newItems);
    windows().refreshEncounterActions();
}

void AddCreaturesEvent::undo()
{
    restoreVitality(m_oldVitality);
    restoreItems(m_oldItems);
    ChangeStateEvent::undo();
    restoreHidden(m_added, m_hiddenBefore);
    theEncounter->setOrder(m_oldOrder);
    windows().refreshEncounterActions();
}

// --- its subclasses ---

AddMonsterEvent::AddMonsterEvent(const CreatureList &list, bool hidden,
                                 const QList<CreatureItem> &oldItems, const EventRecord &record)
    : AddCreaturesEvent(EventType::AddMonster, displayNameOf(list.at(0)), list, hidden, oldItems,
                        record)
{
}

QString AddMonsterEvent::text() const
{
    return tr("Add Monster: %1%2").arg(m_name, suffix());
}

AddMonstersEvent::AddMonstersEvent(const QString &name, const CreatureList &list, bool hidden,
                                   const QList<CreatureItem> &oldItems, const EventRecord &record)
    : AddCreaturesEvent(EventType::AddMonsters, name, list, hidden, oldItems, record)
{
}

QString AddMonstersEvent::text() const
{
    return tr("Add Encounter: %1%2").arg(m_name, suffix());
}

SetPartyEvent::SetPartyEvent(const CreatureList &list, bool hidden,
                             const QList<CreatureItem> &oldItems, const EventRecord &record)
    : AddCreaturesEvent(EventType::SetParty, list.names(), list, hidden, oldItems, record)
{
    m_newOrder = m_oldOrder;
    m_newOrder.removeKind(false);
    m_newOrder.insertList(theEncounter->currentIndex() + 1, m_added);
    m_oldVitality = {};
}

QString SetPartyEvent::text() const
{
    return tr("Set Party: %1%2").arg(names(), suffix());
}

AddCharactersEvent::AddCharactersEvent(const CreatureList &list, bool hidden,
                                       const QList<CreatureItem> &oldItems,
                                       const EventRecord &record)
    : AddCreaturesEvent(EventType::AddCharacters, list.names(), list, hidden, oldItems, record)
{
}

QString AddCharactersEvent::text() const
{
    return tr("Add Characters: %1%2").arg(names(), suffix());
}

// --- SetEncounterEvent ---

SetEncounterEvent::SetEncounterEvent(const EncounterEntry &entry, const CreatureList &list,
                                     bool hidden, const EventRecord &record)
    : ChangeStateEvent(EventType::SetEncounter, record), m_hidden(hidden), m_added(sorted(list)),
      m_newEntry(entry), m_oldEntry(theEncounter->entry()), m_oldOrder(theEncounter->creatures()),
      m_newVitality(liveVitality(m_added))
{
    QList<CreatureItem> items = itemsOf(m_added);
    record.field(m_newEntry);
    record.field(items);
    record.field(m_newVitality);
    record.field(ID_SET_ENC_EVENT_HIDDEN, m_hidden);
    close(record, ID_SET_ENC_EVENT_END);
    m_added = CreatureList(items);
    m_hiddenBefore = hiddenOf(m_added);
    m_oldVitality = vitalityBefore(m_oldOrder);
    m_newOrder = m_oldOrder;
    m_newOrder.removeKind(true);
    m_newOrder.insertList(m_newOrder.count(), m_added);
    init(nullptr, m_added.list());
}

QString SetEncounterEvent::text() const
{
    return tr("Set Encounter: %1%2").arg(m_newEntry.name, hiddenSuffix(m_hidden));
}

void SetEncounterEvent::redo()
{
    m_added.setHidden(m_hidden);
    theEncounter->setEntry(m_newEntry);
    theEncounter->setOrder(m_newOrder);
    applyVitality(m_newVitality);
    windows().refreshEncounterActions();
}

void SetEncounterEvent::undo()
{
    restoreVitality(m_oldVitality);
    ChangeStateEvent::undo();
    restoreHidden(m_added, m_hiddenBefore);
    theEncounter->setEntry(m_oldEntry);
    theEncounter->setOrder(m_oldOrder);
    windows().refreshEncounterActions();
}

// --- ShowHideEvent ---

ShowHideEvent::ShowHideEvent(Creature *creature, bool hide, const EventRecord &record)
    : Event(EventType::ShowHide, record), m_creature(creature), m_hide(hide)
{
    record.field(m_creature);
    record.field(ID_SHOW_HIDE_EVENT_HIDE, m_hide);
    close(record, ID_SHOW_HIDE_EVENT_END);
}

QString ShowHideEvent::text() const
{
    const QString form = m_hide ? tr("Hide %1") : tr("Show %1");
    return form.arg(displayNameOf(m_creature));
}

void ShowHideEvent::redo()
{
    if (m_creature)
        m_creature->setHidden(m_hide);
}

void ShowHideEvent::undo()
{
    if (m_creature)
        m_creature->setHidden(!m_hide);
}

// --- RemoveCreaturesEvent and its subclass ---

RemoveCreaturesEvent::RemoveCreaturesEvent(Creature *creature, const EventRecord &record)
    : RemoveCreaturesEvent(QList<Creature *> {creature}, record)
{
}

RemoveCreaturesEvent::RemoveCreaturesEvent(const QList<Creature *> &creatures,
                                           const EventRecord &record)
    : RemoveCreaturesEvent(EventType::RemoveCreatures, creatures, record)
{
}

RemoveCreaturesEvent::RemoveCreaturesEvent(EventType::Code type, const QList<Creature *> &creatures,
                                           const EventRecord &record)
    : Event(type, record), m_creatures(creatures), m_before(EncounterSnapshot::take())
{
    record.field(m_creatures);
    close(record, ID_REMOVE_CREATURE_EVENT_END);
    m_creatures.removeAll(nullptr);
    m_visible = std::all_of(m_creatures.cbegin(), m_creatures.cend(), isCharacter);
}

QString RemoveCreaturesEvent::text() const
{
    return tr("Removed: %1").arg(displayNames(m_creatures));
}

void RemoveCreaturesEvent::redo()
{
    theEncounter->remove(m_creatures);
    refreshTurnActions();
}

void RemoveCreaturesEvent::undo()
{
    m_before.restore();
    refreshTurnActions();
}

RemoveCurrentEvent::RemoveCurrentEvent(Creature *creature, const EventRecord &record)
    : RemoveCreaturesEvent(EventType::RemoveCurrent, {creature}, record)
{
}

QString RemoveCurrentEvent::text() const
{
    return tr("Removed Current: %1").arg(displayNames(m_creatures));
}

// --- AdjustInitiativeEvent ---

AdjustInitiativeEvent::AdjustInitiativeEvent(const QList<Creature *> &creatures, int delta,
                                             const EventRecord &record)
    : Event(EventType::AdjustInitiative, record), m_creatures(creatures), m_delta(delta),
      m_before(EncounterSnapshot::take())
{
    record.field(m_creatures);
    record.field(ID_ADJUST_INITIATIVE_ADJUSTMENT, m_delta);
    close(record, ID_ADJUST_INITIATIVE_EVENT_END);
    m_creatures.removeAll(nullptr);
    m_visible = std::all_of(m_creatures.cbegin(), m_creatures.cend(), isCharacter);
}

QString AdjustInitiativeEvent::text() const
{
    const QString form = m_delta > 0 ? tr("Initiative +%1: %2") : tr("Initiative %1: %2");
    return form.arg(QString::number(m_delta), displayNames(m_creatures));
}

void AdjustInitiativeEvent::redo()
{
    theEncounter->adjustInitiative(m_creatures, m_delta);
}

void AdjustInitiativeEvent::undo()
{
    m_before.restore();
}

// --- RenameCreatureEvent ---

RenameCreatureEvent::RenameCreatureEvent(const QString &oldName, const QString &newName,
                                         const EventRecord &record)
    : Event(EventType::RenameCreature, record), m_oldName(oldName), m_newName(newName)
{
    record.field(ID_RENAME_EVENT_OLD_NAME, m_oldName);
    record.field(ID_RENAME_EVENT_NEW_NAME, m_newName);
    close(record, ID_RENAME_EVENT_END);
    m_visible = m_oldName.contains(QStringLiteral(" ("));
}

QString RenameCreatureEvent::text() const
{
    // The names in the record are those of the DM.
    const Creature *renamed = PlayersNames::areUsed() ? findCreature(m_newName, false) : nullptr;
    if (renamed && (renamed->isHidden() || renamed->aliasMode() != 0))
        return tr("Rename %1 -> %2").arg(renamed->displayName(), renamed->displayName());
    return tr("Rename %1 -> %2").arg(m_oldName, m_newName);
}

void RenameCreatureEvent::redo()
{
    Creature *a = findFighter(m_oldName);
    Creature *b = findFighter(m_newName);
    m_previousName.clear();
    // Kept from the first time: later another creature may have either name.
    if (!m_renamed)
        m_renamed = !theEncounter->contains(a) && theEncounter->contains(b) ? b : a;
    if (!isKnown())
        return;
    if (a == m_renamed && theEncounter->contains(a)) {
        if (!b)
            a->setName(ownName(*a, m_newName));
        else if (a->isMissing() && a->isMonster() == b->isMonster() && !theEncounter->contains(b))
            merge(a, b);
    }
    m_previousName = m_renamed->nameBefore();
    m_renamed->setNameBefore(theEncounter->contains(m_renamed) ? m_renamed->name() : m_newName);
}

// For a hero outside the encounter the event changes only the name that the history knows.
bool RenameCreatureEvent::isKnown() const
{
    return m_renamed && (theEncounter->contains(m_renamed) || !m_renamed->isMonster());
}

// Prefers the creature in the encounter to one of the same name in the library.
Creature *RenameCreatureEvent::findFighter(const QString &name)
{
    for (Creature *creature : theEncounter->creatures()) {
        if (creature->displayName().compare(name, Qt::CaseInsensitive) == 0)
            return creature;
    }
    return findCreature(name, false);
}

// The creature of the fight takes over the record that the library has under the new name. Other
// events may still point at the library's creature, so it stays alive.
void RenameCreatureEvent::merge(Creature *missing, Creature *found)
{
    missing->copyFrom(found);
    missing->setFileName(found->fileName());
    missing->setSavedStatBlock(found->savedStatBlock());
    if (found->isMonster())
        theMonsters->retireClone(found);
    else
        theCharacters->replaceByStandIn(found, missing);
    missing->statBlockChanged();
}

void RenameCreatureEvent::undo()
{
    if (!isKnown())
        return;
    // Another in the library may have the old name now.
    if (theEncounter->contains(m_renamed) && !findFighter(m_oldName))
        m_renamed->setName(ownName(*m_renamed, m_oldName));
    if (!m_previousName.isEmpty())
        m_renamed->setNameBefore(m_previousName);
    // Where the hero's text has the new name, the next command logs it again.
    theEncounter->markVitalityStale();
}

// --- SetAliasEvent ---

SetAliasEvent::SetAliasEvent(Creature *creature, bool show, const QString &alias,
                             const EventRecord &record)
    : Event(EventType::SetAlias, record), m_creature(creature), m_newMode(show), m_newAlias(alias)
{
    record.field(ID_ALIAS_EVENT_CREATURE, m_creature);
    record.field(ID_ALIAS_EVENT_SHOW, m_newMode);
    record.field(ID_ALIAS_EVENT_ALIAS, m_newAlias);
    close(record, ID_EVENT_END);
    if (!m_creature)
        return;
    m_oldMode = m_creature->aliasMode();
    m_oldAlias = m_creature->alias();
}

QString SetAliasEvent::text() const
{
    const QString name = displayNameOf(m_creature);
    if (m_newAlias.isEmpty())
        return tr("%1: Remove Alias").arg(name);
    if (m_newMode)
        return tr("%1: Show Alias: %2").arg(name, m_newAlias);
    if (m_newAlias == m_oldAlias)
        return tr("%1: Hide Alias").arg(name);
    return tr("%1: Hide Alias: %2").arg(name, m_newAlias);
}

void SetAliasEvent::redo()
{
    if (!m_creature)
        return;
    m_creature->setAliasMode(m_newMode ? 1 : 0);
    m_creature->setAlias(m_newAlias);
}

void SetAliasEvent::undo()
{
    if (!m_creature)
        return;
    m_creature->setAliasMode(m_oldMode);
    m_creature->setAlias(m_oldAlias);
}

#include "moc_rosterevents.cpp"
