#include "windowinterface.h"
