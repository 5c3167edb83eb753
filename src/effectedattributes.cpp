#include "effectedattributes.h"
