#include "windows.h"

#include <QWidget>

PlayersDisplay *thePlayersDisplay = nullptr;
std::unique_ptr<PlayersDisplay> (*makePlayersDisplay)() = nullptr;
LibraryWindow *theManagerWindow = nullptr;
LibraryWindow *theCharacterWindow = nullptr;
std::unique_ptr<LibraryWindow> (*makeManagerWindow)() = nullptr;
std::unique_ptr<LibraryWindow> (*makeCharacterWindow)() = nullptr;
QWidget *theMainWindow = nullptr;
QWidget *activeAppWindow = nullptr;

QWidget *dialogParent(QWidget *parent)
{
    if (parent)
        return parent;
    return activeAppWindow && activeAppWindow->isVisible() ? activeAppWindow : nullptr;
}
