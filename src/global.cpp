#include "global.h"

QFile logFile;
QPixmap *blankPortrait = nullptr;

Global::Global(QObject *parent) : QObject(parent) { }

#include "moc_global.cpp"
