#include "creature.h"
