#include "flatdialog.h"
