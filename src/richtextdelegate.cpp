#include "richtextdelegate.h"
