#include "messagedialog.h"
