// The windows of the running program, one of each.
#pragma once

#include <QString>

class Creature;
class QWidget;

// What forms tell the players, for whom a window of its own stands on another screen.
class PlayersDisplay {
public:
    // Shows the creature and the rich text to the players. Null ends it.
    virtual void setInitiativeMessage(Creature *creature, const QString &message) = 0;

protected:
    ~PlayersDisplay() = default;
};

// Null while there is no such window; it sets and clears the pointer itself.
extern PlayersDisplay *thePlayersDisplay;
// Null before the main window exists and after its shut-down.
extern QWidget *theMainWindow;
// The window of the program that was active last; never a dialog.
extern QWidget *activeAppWindow;

// What a modal dialog stands above: `parent`, or else the active window while it is visible, or
// null.
QWidget *dialogParent(QWidget *parent);
