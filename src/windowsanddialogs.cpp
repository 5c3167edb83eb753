#include "windowsanddialogs.h"
