#include "keyvalue.h"
