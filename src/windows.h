// The windows of the running program, one of each.
#pragma once

#include <QString>
#include <functional>
#include <memory>

class Creature;
class QWidget;

// The window that the players see on another screen, for those who don't know it: the DM's Display
// shows and hides it, and forms tell the players whom they ask about.
class PlayersDisplay {
public:
    virtual ~PlayersDisplay() = default;

    virtual QWidget *displayWindow() = 0;
    // Shows the creature and the rich text to the players. Null ends it.
    virtual void setInitiativeMessage(Creature *creature, const QString &message) = 0;
    // Everything anew from encounter, history and terms.
    virtual void refresh() = 0;
    // While it is curtained the players see nothing of the fight.
    virtual bool isCurtained() const = 0;
    virtual void setCurtained(bool curtained) = 0;

    // Called when the window or its curtain was shown or hidden, by whatever means.
    std::function<void()> shownChanged;
};

// A window in which the library is edited, for those who don't know it. Nothing it changes is on
// disk before saveAll(). Hidden at first; closing hides it.
class LibraryWindow {
public:
    virtual ~LibraryWindow() = default;

    virtual QWidget *libraryWindow() = 0;
    // Writes what is unsaved; what can't be written keeps its mark.
    virtual void saveAll() = 0;
    // Lists and texts anew: another data folder, a change of the library made elsewhere, new terms.
    virtual void refresh() = 0;
};

// The Monster Manager and the Character Creator, and how each is made; null for none, as with the
// Player's Display below.
extern LibraryWindow *theManagerWindow;
extern LibraryWindow *theCharacterWindow;
extern std::unique_ptr<LibraryWindow> (*makeManagerWindow)();
extern std::unique_ptr<LibraryWindow> (*makeCharacterWindow)();

// Null while there is no such window; it sets and clears the pointer itself.
extern PlayersDisplay *thePlayersDisplay;
// Makes the window of the running program; null, as in most tests, for none.
extern std::unique_ptr<PlayersDisplay> (*makePlayersDisplay)();
// Null before the main window exists and after its shut-down.
extern QWidget *theMainWindow;
// The window of the program that was active last; never a dialog.
extern QWidget *activeAppWindow;

// What a modal dialog stands above: `parent`, or else the active window while it is visible, or
// null.
QWidget *dialogParent(QWidget *parent);
