#include "eventsignaler.h"
