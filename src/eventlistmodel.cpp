#include "eventlistmodel.h"
