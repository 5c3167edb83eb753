#include "turnevents.h"
