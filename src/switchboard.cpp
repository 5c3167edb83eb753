#include "switchboard.h"

#include "moc_switchboard.cpp"
