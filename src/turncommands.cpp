// The main window's turn cycle: asks what has to be asked, and hands the rest to the TurnCycle.
#include <QPointer>

#include "creature.h"
#include "encounter.h"
#include "history.h"
#include "initiativedialog.h"
#include "jumpindialog.h"
#include "mainwindow.h"
#include "savingthrowdialog.h"
#include "turncycle.h"

namespace {

// Asks only where there is a choice. Null when nobody waits or the DM cancelled.
Creature *chooseJumper(const CreatureList &delayed, const CreatureList &readied)
{
    if (delayed.count() + readied.count() <= 1)
        return delayed.isEmpty() ? readied.at(0) : delayed.at(0);
    JumpInDialog dialog(delayed, readied);
    return dialog.exec() == QDialog::Accepted ? dialog.selected() : nullptr;
}

} // namespace

TurnCycle MainWindow::turnCycle()
{
    return TurnCycle([this](Creature *creature, const QList<Effect *> &effects, bool canCancel) {
        // The window, which owns the dialog, may go while it runs.
        const QPointer<SavingThrowDialog> dialog(
            new SavingThrowDialog(creature, effects, canCancel, this));
        std::optional<QList<Effect *>> saved;
        // The end of the program rejects the dialog too; the turn then waits with its saves for the
        // next start.
        if (dialog->exec() == QDialog::Accepted)
            saved = dialog->savedEffects();
        delete dialog;
        return saved;
    });
}

void MainWindow::onStartStopEncounter()
{
    if (!theHistory->getStream())
        return;
    if (theEncounter->isRunning()) {
        turnCycle().stopEncounter();
        return;
    }
    InitiativeDialog dialog(theEncounter->creatures());
    if (dialog.exec())
        turnCycle().startEncounter(dialog.characterItems(), dialog.monsterItems());
}

void MainWindow::onNextTurn()
{
    turnCycle().nextTurn();
}

void MainWindow::onDelay()
{
    turnCycle().delay();
}

void MainWindow::onReady()
{
    turnCycle().ready();
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
    if (Creature *jumper = chooseJumper(CreatureList(delayed), CreatureList(readied)))
        turnCycle().jumpIn(jumper);
}

void MainWindow::onRemoveCreatures()
{
    removeCreatures(selectedCreatures());
}

void MainWindow::removeCreatures(const QList<Creature *> &creatures)
{
    if (creatures.isEmpty() || !theHistory->getStream())
        return;
    const QPointer<MainWindow> window = this;
    turnCycle().removeCreatures(creatures);
    if (window)
        clearSelection();
}
