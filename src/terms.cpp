#include "terms.h"
