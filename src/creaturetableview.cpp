#include "creaturetableview.h"
