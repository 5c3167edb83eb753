#include "memorytracker.h"
