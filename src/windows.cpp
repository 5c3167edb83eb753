#include "windows.h"

#include <QWidget>

PlayersDisplay *thePlayersDisplay = nullptr;
QWidget *theMainWindow = nullptr;
QWidget *activeAppWindow = nullptr;

QWidget *dialogParent(QWidget *parent)
{
    if (parent)
        return parent;
    return activeAppWindow && activeAppWindow->isVisible() ? activeAppWindow : nullptr;
}
