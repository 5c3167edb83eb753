#include "version.h"
