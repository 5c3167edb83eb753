#include "pickcharactersdialog.h"
