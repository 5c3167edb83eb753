// The fight of a log as JSON: its events, the encounter and the creatures as they stand.
#pragma once

#include <QJsonObject>

// Of the running objects, with the log of the data folder replayed. `known` is the answer of the
// history's load.
QJsonObject fightReport(bool known);
