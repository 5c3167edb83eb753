#include "objectstream.h"

#include "moc_objectstream.cpp"
