#include "effectevents.h"
