#include "vitalityevents.h"
