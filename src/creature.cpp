#include "creature.h"

#include "moc_creature.cpp"
