#include "switchboard.h"

SwitchBoard *switchBoard()
{
    static SwitchBoard board;
    return &board;
}

#include "moc_switchboard.cpp"
