#include "encounters.h"

#include "moc_encounters.cpp"
