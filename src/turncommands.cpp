// The turn cycle of the DM's Display. Each step of a turn is an event of its own, so that each can
// be stepped back by itself.
#include <QPointer>

#include "appendevent.h"
#include "creature.h"
#include "creaturelistmodel.h"
#include "effect.h"
#include "effectevents.h"
#include "encountercommands.h"
#include "initiativedialog.h"
#include "jumpindialog.h"
#include "mainwindow.h"
#include "rosterevents.h"
#include "savingthrowdialog.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

bool appendNextTurn()
{
    ObjectStream *stream = streamForEvent();
    if (!stream)
        return false;
    theHistory->doEvent(new NextTurnEvent(stream, false));
    return true;
}

// A dead creature and one without an initiative bonus are passed over.
bool canAct(const Creature *creature)
{
    return creature && !creature->isDead() && creature->takesTurns();
}

// A copy, as events that are raised on the way change the order itself.
QList<Creature *> everyone()
{
    return theEncounter->creatures().list();
}

// Asks only where there is a choice. Null when nobody waits or the DM cancelled.
Creature *chooseJumper(const CreatureList &delayed, const CreatureList &readied)
{
    if (delayed.count() + readied.count() <= 1)
        return delayed.isEmpty() ? readied.at(0) : delayed.at(0);
    JumpInDialog dialog(delayed, readied);
    return dialog.exec() == QDialog::Accepted ? dialog.selected() : nullptr;
}

} // namespace

void MainWindow::onStartStopEncounter()
{
    if (!theHistory->getStream())
        return;
    if (theEncounter->isRunning())
        stopEncounter();
    else
        startEncounter();
}

void MainWindow::startEncounter()
{
    InitiativeDialog dialog(theEncounter->creatures());
    if (!dialog.exec())
        return;
    if (!appendEvent<StartEncounterEvent>(dialog.characterItems(), dialog.monsterItems()))
        return;
    // The first who can act gets the turn; nothing of a turn's start happens on the way.
    const int count = theEncounter->count();
    for (int i = 0; i < count && !canAct(theEncounter->current()); ++i) {
        if (!appendNextTurn())
            return;
    }
}

void MainWindow::stopEncounter()
{
    if (!endEncounter())
        return;
    const CreatureList monsters = theEncounter->monsters();
    if (!monsters.isEmpty())
        appendEvent<RemoveCreaturesEvent>(monsters.list());
}

void MainWindow::onNextTurn()
{
    if (theHistory->getStream() && endTurn(false, true))
        advanceTurn();
}

// The delayer makes no saving throws, and only what helps its own side ends with this turn.
void MainWindow::onDelay()
{
    Creature *current = theEncounter->current();
    if (!current || !appendEvent<DelayEvent>(current))
        return;
    endTurn(true, false);
    advanceTurn();
}

void MainWindow::onReady()
{
    Creature *current = theEncounter->current();
    if (!current || !appendEvent<ReadyEvent>(current))
        return;
    if (endTurn(false, false))
        advanceTurn();
}

void MainWindow::onJumpIn()
{
    if (!theHistory->getStream())
        return;
    QList<Creature *> delayed;
    QList<Creature *> readied;
    for (Creature *creature : theEncounter->creatures()) {
        if (creature->isDelayed())
            delayed << creature;
        if (creature->isReadied())
            readied << creature;
    }
    Creature *jumper = chooseJumper(CreatureList(delayed), CreatureList(readied));
    if (!jumper)
        return;
    if (!jumper->isDelayed())
        appendEvent<EndReadyEvent>(jumper);
    else if (endTurn(false, false))
        // The turn of whom it interrupts is over; of the start of its own turn nothing is raised.
        appendEvent<JumpInEvent>(jumper);
}

bool MainWindow::endTurn(bool skipSaves, bool canCancel)
{
    Creature *current = theEncounter->current();
    if (!current)
        return true;
    if (!skipSaves && !askSavingThrows(current, canCancel))
        return false;
    const QList<Creature *> creatures = everyone();
    for (Creature *creature : creatures)
        creature->removeEffectsAtEndOfTurn(current, skipSaves);
    return true;
}

bool MainWindow::askSavingThrows(Creature *creature, bool canCancel)
{
    if (!theHistory->getStream())
        return false;
    QList<Effect *> effects;
    for (Effect *effect : creature->effects())
        if (effect->needsSave(creature))
            effects << effect;
    std::unique_ptr<DyingEffect> dying;
    if (creature->isDying() && !creature->isStable()) {
        dying = std::make_unique<DyingEffect>(creature);
        effects << dying.get();
    }
    if (effects.isEmpty())
        return true;

    // The window, which owns the dialog, may go while it runs.
    const QPointer<SavingThrowDialog> dialog(
        new SavingThrowDialog(creature, effects, canCancel, this));
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    const QList<Effect *> saved = isAccepted ? dialog->savedEffects() : QList<Effect *>();
    delete dialog;
    // Also when the program ends: the turn then waits with its saves for the next start.
    if (!isAccepted)
        return false;
    for (Effect *effect : saved)
        if (effect != dying.get() && !appendEvent<RemoveOnSaveEvent>(creature, effect))
            return false;
    return !dying || saved.contains(dying.get())
        || appendEvent<FailedDeathSavingThrowEvent>(creature);
}

void MainWindow::advanceTurn()
{
    // At most once around, so that it ends where nobody can act.
    const int count = theEncounter->count();
    for (int i = 0; i < count; ++i) {
        if (!passTurn())
            return;
        Creature *current = theEncounter->current();
        if (current)
            startTurn(current);
        if (canAct(current) || !endTurn(false, true))
            return;
    }
}

bool MainWindow::passTurn()
{
    if (!theHistory->getStream())
        return false;
    Creature *next = theEncounter->next();
    if (!next)
        return false;
    if (!next->isDelayed())
        return appendNextTurn();
    // A delay that runs out costs the creature its turn, which ends with its saves.
    return appendEvent<JumpInEvent>(next) && endTurn(false, false);
}

void MainWindow::startTurn(Creature *creature)
{
    creature->applyOngoingDamage();
    creature->applyRegeneration();
    const QList<Creature *> creatures = everyone();
    for (Creature *other : creatures)
        other->removeEffectsAtStartOfTurn(creature);
    creature->rechargePowers();
}

void MainWindow::onRemoveCreatures()
{
    removeCreatures(selectedCreatures());
}

void MainWindow::removeCreatures(const QList<Creature *> &creatures)
{
    if (creatures.isEmpty() || !theHistory->getStream())
        return;
    QList<Creature *> others = creatures;
    Creature *current = theEncounter->current();
    const bool removesAll = creatures.size() >= theEncounter->count();
    // Nobody is left to pass the turn to: the fight is over, also for those who leave.
    if (removesAll && theEncounter->isRunning() && !endEncounter())
        return;
    const bool passesTurn = !removesAll && others.removeOne(current);
    if (!others.isEmpty())
        appendEvent<RemoveCreaturesEvent>(others);
    // The turn passes on first, and only then the creature leaves.
    if (passesTurn) {
        const QPointer<MainWindow> window = this;
        advanceTurn();
        if (!window)
            return;
        appendEvent<RemoveCurrentEvent>(current);
    }
    clearSelection();
}
