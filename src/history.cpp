#include "history.h"

#include "moc_history.cpp"
