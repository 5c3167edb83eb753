// The heading of a prepared encounter as it stands in the log.
#pragma once

#include <QString>

struct EncounterEntry {
    QString fileName;
    QString name;
    QString description;
    int level = 0;
    int xp = 0;
    QString adventure;
};
