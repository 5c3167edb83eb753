#include "creaturestate.h"
