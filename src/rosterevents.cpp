#include "rosterevents.h"
