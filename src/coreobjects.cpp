#include "coreobjects.h"
