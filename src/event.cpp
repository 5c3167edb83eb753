#include "event.h"

#include "moc_event.cpp"

Event::~Event() = default;
