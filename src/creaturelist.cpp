#include "creaturelist.h"
