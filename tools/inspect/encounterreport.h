// The prepared encounters of a data folder as JSON.
#pragma once

#include <QJsonArray>

// In the order of the collection; levels are those for the party size of the windows.
QJsonArray encounterReport();
