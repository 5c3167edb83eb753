#include "pickmonsterdialog.h"
