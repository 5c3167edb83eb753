#include "creaturefile.h"
