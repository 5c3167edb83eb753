#include "pickencounterdialog.h"
