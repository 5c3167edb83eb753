#include "preparedencounter.h"
