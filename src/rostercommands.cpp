// The main window's commands on who is in the encounter, and how they are listed.
#include <algorithm>

#include "appendevent.h"
#include "creature.h"
#include "creaturelistmodel.h"
#include "encounter.h"
#include "encountercommands.h"
#include "initiativedialog.h"
#include "mainwindow.h"
#include "monsters.h"
#include "pickcharactersdialog.h"
#include "pickencounterdialog.h"
#include "pickmonsterdialog.h"
#include "preparedencounter.h"
#include "rosterevents.h"
#include "setaliasdialog.h"

namespace {

// The roll that the initiative dialog gave the creature itself or its group.
CreatureItem rolledItem(Creature *creature, const QList<CreatureInit> &rolls)
{
    const QString name = creature->displayName();
    const auto roll = std::find_if(rolls.begin(), rolls.end(), [&](const CreatureInit &init) {
        return init.name == name || init.name == creature->group();
    });
    return roll == rolls.end() ? CreatureItem {creature}
                               : CreatureItem {creature, roll->roll, roll->random};
}

// Each creature once, without those that are in the encounter already.
CreatureList newcomersAmong(const CreatureList &creatures)
{
    QList<Creature *> newcomers;
    for (Creature *creature : creatures) {
        if (!theEncounter->contains(creature) && !newcomers.contains(creature))
            newcomers << creature;
    }
    return CreatureList(newcomers);
}

// Aliases and hidden marks of an encounter file, as events, so that a replay needs no file.
void applyMarks(const PreparedEncounter &encounter, const CreatureList &added, bool allHidden)
{
    for (const EncounterMonster &monster : encounter.monsters()) {
        QString group = monster.group;
        Creature *creature = theMonsters->ensureTemplate(group, monster.id, false);
        if (!creature || !added.contains(creature))
            continue;
        if (!monster.alias.isEmpty() && !appendEvent<SetAliasEvent>(creature, true, monster.alias))
            return;
        if (monster.hidden && !allHidden && !appendEvent<ShowHideEvent>(creature, true))
            return;
    }
}

// Those whom the players will not see by their own names.
QList<Creature *> keptFromPlayers(const PreparedEncounter &encounter, const CreatureList &newcomers,
                                  bool allHidden)
{
    QList<Creature *> kept;
    for (const EncounterMonster &monster : encounter.monsters()) {
        QString group = monster.group;
        Creature *creature = theMonsters->ensureTemplate(group, monster.id, false);
        if (creature && newcomers.contains(creature)
            && (allHidden || monster.hidden || !monster.alias.isEmpty()))
            kept << creature;
    }
    return kept;
}

// Asks for the initiative of creatures that join a running encounter, and gives what they had
// before. The players aren't told of those in `kept`. False when the DM cancelled.
bool rollNewcomers(const CreatureList &newcomers, QList<CreatureItem> &oldItems,
                   const QList<Creature *> &kept = {})
{
    oldItems = itemsOf(newcomers);
    if (!theEncounter->isRunning())
        return true;
    InitiativeDialog dialog(newcomers);
    dialog.keepFromPlayers(kept);
    if (!dialog.exec())
        return false;
    const QList<CreatureInit> characters = dialog.characterItems();
    const QList<CreatureInit> monsters = dialog.monsterItems();
    for (Creature *creature : newcomers)
        creature->setItem(rolledItem(creature, creature->isMonster() ? monsters : characters));
    return true;
}

void addEncounter(const PreparedEncounter &encounter, bool hidden)
{
    const CreatureList newcomers = newcomersAmong(encounter.creatures());
    QList<CreatureItem> oldItems;
    const QList<Creature *> kept = keptFromPlayers(encounter, newcomers, hidden);
    if (newcomers.isEmpty() || !rollNewcomers(newcomers, oldItems, kept))
        return;
    if (!appendEvent<AddMonstersEvent>(encounter.name(), newcomers, hidden, oldItems))
        return;
    makeFresh(newcomers);
    applyMarks(encounter, newcomers, hidden);
}

void replaceEncounter(const PreparedEncounter &encounter, bool hidden)
{
    const CreatureList monsters = encounter.creatures();
    if (!appendEvent<SetEncounterEvent>(encounter.entry(), monsters, hidden))
        return;
    makeFresh(monsters);
    applyMarks(encounter, monsters, hidden);
}

} // namespace

void MainWindow::onPickParty()
{
    CreatureList party;
    {
        PickCharactersDialog dialog;
        if (!dialog.exec())
            return;
        party = dialog.selectedCharacters();
    }
    QList<CreatureItem> oldItems;
    if (party.isEmpty() || !theHistory->getStream() || !rollNewcomers(party, oldItems))
        return;
    if (theEncounter->isRunning())
        appendEvent<AddCharactersEvent>(party, false, oldItems);
    else
        appendEvent<SetPartyEvent>(party, false, oldItems);
}

void MainWindow::onLoadEncounter()
{
    PreparedEncounter encounter;
    int answer = 0;
    {
        PickEncounterDialog dialog;
        answer = dialog.exec();
        if (!answer || !dialog.selectedEncounter())
            return;
        encounter = *dialog.selectedEncounter();
    }
    if (!theHistory->getStream())
        return;
    const bool hidden =
        answer == PickEncounterDialog::AddHidden || answer == PickEncounterDialog::SetHidden;
    const bool adds =
        answer == PickEncounterDialog::Add || answer == PickEncounterDialog::AddHidden;
    if (adds)
        addEncounter(encounter, hidden);
    else
        replaceEncounter(encounter, hidden);
}

void MainWindow::onAddMonster()
{
    QString alias;
    Creature *monster = nullptr;
    bool hidden = false;
    {
        PickMonsterDialog dialog;
        const int answer = dialog.exec();
        if (!answer)
            return;
        hidden = answer == PickMonsterDialog::AddHidden;
        monster = dialog.selectedMonster(alias);
    }
    if (!monster || theEncounter->contains(monster) || !theHistory->getStream())
        return;
    const CreatureList newcomer(QList<Creature *> {monster});
    QList<CreatureItem> oldItems;
    const bool isKept = hidden || !alias.isEmpty();
    if (!rollNewcomers(newcomer, oldItems, isKept ? QList {monster} : QList<Creature *>()))
        return;
    if (!appendEvent<AddMonsterEvent>(newcomer, hidden, oldItems))
        return;
    makeFresh(newcomer);
    if (!alias.isEmpty())
        appendEvent<SetAliasEvent>(monster, true, alias);
}

void MainWindow::onShowAndHide()
{
    const QList<Creature *> creatures = selectedCreatures();
    for (Creature *creature : creatures) {
        if (!appendEvent<ShowHideEvent>(creature, !creature->isHidden()))
            return;
    }
}

void MainWindow::onSetAlias()
{
    editAlias(selectedCreatures());
}

void MainWindow::editAlias(const QList<Creature *> &creatures)
{
    if (creatures.isEmpty() || !theHistory->mayWrite())
        return;
    SetAliasDialog dialog {CreatureList(creatures)};
    if (dialog.exec() != QDialog::Accepted)
        return;
    QString text;
    const SetAliasDialog::Mode mode = dialog.result(text);
    const bool needsAlias = mode == SetAliasDialog::Remove || text.isEmpty();
    for (Creature *creature : creatures) {
        // There is no alias to show, to hide or to remove.
        if (needsAlias && creature->alias().isEmpty())
            continue;
        const bool show = mode == SetAliasDialog::Show;
        const QString alias = mode == SetAliasDialog::Remove ? QString()
            : text.isEmpty()                                 ? creature->alias()
                                                             : text;
        if (!appendEvent<SetAliasEvent>(creature, show, alias))
            return;
    }
}

void MainWindow::setAliasShown(const QList<Creature *> &creatures, bool show)
{
    for (Creature *creature : creatures) {
        const bool isShown = creature->aliasMode() != 0;
        const bool applies = show ? !isShown && !creature->alias().isEmpty() : isShown;
        if (applies && !appendEvent<SetAliasEvent>(creature, show, creature->alias()))
            return;
    }
}

void MainWindow::onUpInitiative()
{
    moveInitiative(-1);
}

void MainWindow::onDownInitiative()
{
    moveInitiative(1);
}

void MainWindow::moveInitiative(int delta)
{
    const QList<Creature *> creatures = selectedCreatures();
    const int count = theEncounter->count();
    if (creatures.isEmpty() || !theHistory->getStream())
        return;
    QList<int> newRows;
    for (const Creature *creature : creatures)
        newRows << (theEncounter->indexOf(creature) + delta + count) % count;
    if (appendEvent<AdjustInitiativeEvent>(creatures, delta))
        m_listModel->setSelectedRows(newRows);
}
