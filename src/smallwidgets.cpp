#include "smallwidgets.h"
