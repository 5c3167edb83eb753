#include "encounter.h"

#include "moc_encounter.cpp"
