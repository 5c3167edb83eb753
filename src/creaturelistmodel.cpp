#include "creaturelistmodel.h"
