#include "monsters.h"

#include "moc_monsters.cpp"
