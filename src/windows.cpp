#include "windows.h"

MainWindow *theMainWindow = nullptr;
QWidget *activeAppWindow = nullptr;
