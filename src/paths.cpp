#include "paths.h"
