#include "dockwidget.h"

#include "moc_dockwidget.cpp"
