#include "datafolder.h"
