#include "windows.h"

#include <QWidget>

QWidget *theMainWindow = nullptr;
QWidget *activeAppWindow = nullptr;

QWidget *dialogParent(QWidget *parent)
{
    if (parent)
        return parent;
    return activeAppWindow && activeAppWindow->isVisible() ? activeAppWindow : nullptr;
}
