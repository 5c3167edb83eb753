#include "streamrecords.h"
