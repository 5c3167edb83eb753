#include "dice.h"
