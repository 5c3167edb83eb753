#include "creatureheaderview.h"
