// The windows of the running program, one of each.
#pragma once

class MainWindow;
class QWidget;

// Null before the main window exists and after its shut-down.
extern MainWindow *theMainWindow;
// The window of the program that was active last; never a dialog.
extern QWidget *activeAppWindow;
