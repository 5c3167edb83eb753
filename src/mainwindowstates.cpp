// When each action of the DM's Display is enabled, and how it reads.
#include <QAction>

#include <algorithm>

#include "creature.h"
#include "docklayout.h"
#include "encounter.h"
#include "history.h"
#include "hpbox.h"
#include "mainwindow.h"
#include "mainwindowactions.h"
#include "paths.h"
#include "playerspreview.h"
#include "windows.h"

namespace {

// Sets the text of the menu and, as the toolkit would do itself, of the tool tip.
void setTextAndToolTip(QAction *action, const QString &text)
{
    action->setText(text);
    action->setToolTip(text);
}

// Setting the same icon again would lay out the tool bars again.
void setIconOnce(QAction *action, const QIcon &icon)
{
    if (action->icon().cacheKey() != icon.cacheKey())
        action->setIcon(icon);
}

} // namespace

void MainWindow::updateActions()
{
    updateHistoryActions();
    updateRosterActions();
    updateEncounterActions();
    updateJumpInAction();
}

bool MainWindow::canCommand() const
{
    return !m_activeDialog && !dataReadOnly;
}

void MainWindow::updateHistoryActions()
{
    const bool free = !m_activeDialog;
    const bool canStepBack = theHistory->canStepBack();
    const bool canStepForward = theHistory->canStepForward();
    m_actions->stepBack->setEnabled(free && canStepBack);
    m_actions->stepForward->setEnabled(free && canStepForward);
    m_actions->newHistory->setEnabled(canCommand() && (canStepBack || canStepForward));
    m_actions->truncateHistory->setEnabled(canCommand() && canStepForward);
}

void MainWindow::updateEncounterActions()
{
    const bool free = canCommand();
    const bool running = theEncounter->isRunning();
    updateStartStopAction();
    for (QAction *action : {m_actions->nextTurn, m_actions->delay, m_actions->ready})
        action->setEnabled(free && running);
    for (QAction *action : {m_actions->shortRest, m_actions->extendedRest})
        action->setEnabled(free && !running && theEncounter->hasLivingCharacter());
    updateHealthActions();
}

// If more than one could jump in, a dialog will ask.
void MainWindow::updateJumpInAction()
{
    const QList<Creature *> &creatures = theEncounter->creatures().list();
    const auto waiting =
        std::count_if(creatures.begin(), creatures.end(), [](const Creature *creature) {
            return creature->isDelayed() || creature->isReadied();
        });
    setTextAndToolTip(m_actions->jumpIn, waiting > 1 ? tr("Jump In...") : tr("Jump In"));
    m_actions->jumpIn->setEnabled(canCommand() && waiting > 0);
}

void MainWindow::updateStartStopAction()
{
    QAction *action = m_actions->startStop;
    const bool running = theEncounter->isRunning();
    const bool hasParty = theEncounter->hasLivingCharacter();
    action->setText(running ? tr("Stop Encounter") : tr("Start Encounter"));
    if (running) {
        action->setToolTip(tr("Stop Encounter"));
        action->setStatusTip(tr("Stop the current encounter"));
    } else if (hasParty) {
        action->setToolTip(tr("Start Encounter"));
        action->setStatusTip(tr("Start the current encounter"));
    } else {
        action->setToolTip(tr("Select a Party to Start Encounter"));
        action->setStatusTip(tr("Select a party in order to start the current encounter"));
    }
    setIconOnce(action, running ? m_actions->stopIcon : m_actions->playIcon);
    action->setEnabled(canCommand() && (running || hasParty));
}

void MainWindow::updateRosterActions()
{
    m_actions->setRoot->setEnabled(!m_activeDialog);
    for (QAction *action : {m_actions->pickParty, m_actions->loadEncounter, m_actions->addMonster})
        action->setEnabled(canCommand());
}

void MainWindow::updateHealthActions()
{
    const bool canSpend = canSpendSurge();
    if (!canSpend)
        m_surgeMode = false;
    const bool usable = canCommand() && selectedCreature(0);
    const bool hasAmount = m_hpBox->value() >= 1;
    updateShowHideAction();
    m_actions->hit->setEnabled(usable && hasAmount && !m_surgeMode);
    m_actions->heal->setEnabled(usable && hasAmount);
    m_actions->setTempHP->setEnabled(usable && hasAmount);
    m_actions->surge->setEnabled(usable && canSpend);
    setIconOnce(m_actions->surge, m_surgeMode ? m_actions->surgeInUseIcon : m_actions->surgeIcon);
    m_actions->conditions->setEnabled(canCommand() && (usable || theEncounter->isRunning()));
    m_actions->showHide->setEnabled(usable);
    m_actions->setAlias->setEnabled(usable);
    m_actions->remove->setEnabled(usable);
    m_actions->upInitiative->setEnabled(usable && theEncounter->isRunning());
    m_actions->downInitiative->setEnabled(usable && theEncounter->isRunning());
}

// The first selected creature decides how the label reads.
void MainWindow::updateShowHideAction()
{
    const Creature *first = selectedCreature(0);
    const bool shows = first && first->isHidden();
    setTextAndToolTip(m_actions->showHide, shows ? tr("Show Creatures") : tr("Hide Creatures"));
    m_actions->showHide->setStatusTip(
        shows ? tr("Show a creature so that it is visible to players")
              : tr("Hide a creature so that it is no longer visible to players"));
    setIconOnce(m_actions->showHide, shows ? m_actions->showIcon : m_actions->hideIcon);
}

void MainWindow::updatePlayersAction()
{
    QAction *action = m_actions->playersWindow;
    const bool isShown = isPlayersVisible();
    action->setText(isShown ? tr("Hide Player's Window...") : tr("Show Player's Window..."));
    action->setToolTip(isShown ? tr("Hide Player's Window") : tr("Show Player's Window"));
    action->setStatusTip(isShown ? tr("Hide the player's window") : tr("Show the Player's window"));
    setIconOnce(action, isShown ? m_actions->playersCloseIcon : m_actions->playersOpenIcon);
    m_docks->playersPreview()->refresh();
}

bool MainWindow::isPlayersVisible() const
{
    return m_players && m_players->displayWindow()->isVisible();
}

// The HP box holds one number, which must be right for all, and each must have a surge left.
bool MainWindow::canSpendSurge() const
{
    const QList<Creature *> creatures = selectedCreatures();
    return !creatures.isEmpty()
        && std::all_of(creatures.begin(), creatures.end(), [&](const Creature *creature) {
               return creature->hsValue() == creatures.first()->hsValue()
                   && creature->currHS() >= 1;
           });
}

void MainWindow::refreshHistoryActions()
{
    // Any event may kill the last living character of the party, or give a creature surges.
    if (!m_replaying)
        updateActions();
}

void MainWindow::refreshEncounterActions()
{
    if (!m_replaying)
        updateEncounterActions();
}

void MainWindow::refreshJumpInAction()
{
    if (!m_replaying)
        updateJumpInAction();
}

void MainWindow::refreshInitiativeList()
{
    if (!m_replaying)
        updateHealthActions();
}
