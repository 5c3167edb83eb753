#include "text.h"
