// What the program says of itself, and the one form of a date in its files.
#pragma once

#include <QString>

// "yyyy-MM-dd-hh-mm-ss" of the local time.
QString currentDateTimeText();
QString versionText();
QString fullVersionText();
