#include "messagelog.h"
