// The windows of the running program, one of each.
#pragma once

class QWidget;

// Null before the main window exists and after its shut-down.
extern QWidget *theMainWindow;
// The window of the program that was active last; never a dialog.
extern QWidget *activeAppWindow;

// What a modal dialog stands above: `parent`, or else the active window while it is visible, or
// null.
QWidget *dialogParent(QWidget *parent);
