// The main window's commands on the history itself.
#include "characters.h"
#include "encounter.h"
#include "history.h"
#include "mainwindow.h"
#include "messagedialog.h"
#include "monsters.h"
#include "outsidechanges.h"
#include "windows.h"

void MainWindow::onStepBack()
{
    theHistory->stepBack();
    updateActions();
}

void MainWindow::onStepForward()
{
    theHistory->stepForward();
    updateActions();
}

void MainWindow::onNewHistory()
{
    const QString backup = tr("<p>A backup of the history.log will be made in the 'Morvane "
                              "Data/History' folder.");
    const bool confirmed = theEncounter->isRunning()
        ? ::askMessage(tr("Encounter Running"),
                       tr("An encounter is still running. When you clear the history log, the "
                          "encounter state will be lost.")
                           + backup,
                       tr("Clear History"))
        : ::askMessage(tr("Clear History"),
                       tr("Clearing the history log will reset all encounters and "
                          "characters.")
                           + backup,
                       tr("Continue"));
    if (!confirmed || !theHistory->backupLog())
        return;
    clearSelection();
    theEncounter->reset();
    theMonsters->resetForEncounter();
    theCharacters->resetForEncounter();
    theHistory->clear();
    updateActions();
    if (m_players)
        m_players->refresh();
}

void MainWindow::onTruncateHistory()
{
    if (::askMessage(tr("Truncate History File"),
                     tr("This action will remove all events after this point from the History. "
                        "Normally you will not need to do this, continuing with a new action "
                        "beyond this point will automatically truncate.<p>However, if you are "
                        "experiencing a problem with the History (for example, the end is corrupt) "
                        "then truncating and restarting should solve the problem."),
                     tr("Truncate"))) {
        theHistory->truncate();
        // A hero's file may have a name that was in one of the events.
        logOutsideChanges();
    }
}
