// Where a form runs: in place of the initiative list, so that it needs no window of its own.
#pragma once

#include <QString>

class Creature;
class FlatDialog;
class QWidget;

class DialogHost {
public:
    virtual ~DialogHost();

    // The window around the page; forms follow its being closed.
    virtual QWidget *hostWindow() = 0;
    // Null and an empty title when the dialog has ended. The dialog stays the caller's.
    virtual void setFlatDialog(const QString &title, FlatDialog *dialog) = 0;
    // Shows the widget in the list's place, as wide as the page and, with `fixed`, as high; null
    // shows the list again. The widget stays the caller's.
    virtual void showFlatWidget(QWidget *widget, bool fixed) = 0;
    // Null while the list shows.
    virtual FlatDialog *activeDialog() const = 0;
    // The panel of the current creature shows this one until the next change of the turn; null
    // leaves it empty.
    virtual void showInCurrentPanel(Creature *creature) = 0;
};

// Null before the main window exists and after it has gone.
DialogHost *dialogHost();
// The host stays the caller's; null when it goes.
void setDialogHost(DialogHost *host);

// The dialog that stands in the list's place; null while the list shows, or nobody could show one.
FlatDialog *activeFlatDialog();
