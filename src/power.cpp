#include "power.h"
