#include "progressbar.h"
