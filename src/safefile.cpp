#include "safefile.h"
