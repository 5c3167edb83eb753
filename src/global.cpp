#include "global.h"

#include <algorithm>

namespace {

int players = 5;

} // namespace

QFile logFile;
QPixmap *blankPortrait = nullptr;

int partySize()
{
    return players;
}

void setPartySize(int count)
{
    players = std::max(1, count);
}

Global::Global(QObject *parent) : QObject(parent) { }

#include "moc_global.cpp"
