#include "characters.h"

#include "moc_characters.cpp"
