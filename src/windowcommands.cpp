// The main window's commands on windows and docks, the data folder, and its help.
#include "datafolder.h"
#include "docklayout.h"
#include "mainwindow.h"
#include "messagedialog.h"
#include "paths.h"
#include "version.h"
#include "windows.h"

namespace {

// One that was minimised comes back.
void bringToFront(QWidget *window)
{
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace

void MainWindow::activateMainWindow()
{
    bringToFront(this);
}

void MainWindow::activateManagerWindow()
{
    if (!m_manager)
        return;
    bringToFront(m_manager->libraryWindow());
    if (m_managerHintShown)
        return;
    m_managerHintShown = true;
    MessageDialog(m_manager->libraryWindow())
        .hint(QStringLiteral("managerWindow/hint"), tr("Monster Manager Hint"),
              tr("<b>Hint:</b> To create a Monster, click 'New', then paste a complete, unmodified "
                 "Stat Block from the Compendium or Adventure Tools into the space provided.<p>"
                 "Click on the portrait frame to select a picture for the monster. The image will "
                 "be copied to your 'Portraits' folder.<p>Add Monsters to an encounter by clicking "
                 "the Right Arrow button after selecting an encounter.<p>The filters can be used "
                 "to reduce the number of items in the lists."));
    // The message took the focus, and the window may have gone with the program meanwhile.
    if (m_manager)
        bringToFront(m_manager->libraryWindow());
}

void MainWindow::activateCharacterWindow()
{
    if (m_characters)
        bringToFront(m_characters->libraryWindow());
}

void MainWindow::onTogglePlayerWindow()
{
    if (!m_players)
        return;
    QWidget *players = m_players->displayWindow();
    if (players->isMinimized())
        bringToFront(players);
    else
        players->setVisible(!players->isVisible());
    updatePlayersAction();
}

void MainWindow::toggleCurrentWindow()
{
    m_docks->rememberHidden(DockLayout::CurrentDock);
}

void MainWindow::toggleSelectedWindow()
{
    m_docks->rememberHidden(DockLayout::SelectedDock);
}

void MainWindow::toggleHistoryWindow()
{
    m_docks->rememberHidden(DockLayout::HistoryDock);
}

void MainWindow::toggleEffectsWindow()
{
    m_docks->rememberHidden(DockLayout::EffectsDock);
}

void MainWindow::togglePlayersView()
{
    m_docks->rememberHidden(DockLayout::PlayersViewDock);
}

void MainWindow::onSetRoot()
{
    QString path;
    QString display;
    setDataFolder(path, display);
}

void MainWindow::onTakeOver()
{
    QString path = dataRoot;
    QString display = displayRoot;
    if (!path.isEmpty())
        setDataFolder(path, display);
}

void MainWindow::onAbout()
{
    MessageDialog().showAbout(
        tr("About Morvane"),
        tr("<b>Morvane</b> keeps the books of a fight at your gaming table: initiative, hit "
           "points, conditions and turns.<p>%1<p>By using this program you agree to the terms "
           "of the MIT license that comes with it.<p>The portrait images of the demo data were "
           "drawn for Morvane.")
            .arg(fullVersionText()));
}

void MainWindow::showSelectionHelp()
{
    MessageDialog().showInfo(
        tr("Help Selecting Creatures"),
        tr("<b>Left-click</b> to select a single creature.<p>"
           "<b>Right-click</b> to add to a selection or toggle selection of a creature.<p>"
           "Clicking in the <b>Name column</b> will focus on the initiative list, you can then "
           "use up and down arrow to change the selection.<p>"
           "Clicking in the <b>Health column</b> will focus on the HP box in the tool bar, you "
           "can then enter a HP value or use up and down arrows to adjust.<p>"
           "<b>Left-clicking</b> in the <b>Conditions and Effects column</b> triggers the "
           "Conditions and Effects dialog.<p>"
           "<b>Right-clicking</b> in the <b>Conditions and Effects column</b> displays the "
           "context menu.<p>"
           "<b>Shift Left-click</b> expands a selection.<p>"
           "<b>Control Left-click</b> acts like a right-click."));
}
