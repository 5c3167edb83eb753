#include "global.h"

#include "moc_global.cpp"
