#include "initiativedialog.h"
