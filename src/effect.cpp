#include "effect.h"

#include "moc_effect.cpp"
