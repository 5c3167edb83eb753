#include "event.h"

#include "moc_event.cpp"
