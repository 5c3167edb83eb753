// Reads the text of a stat block, as it was pasted from wherever, into a record.
#pragma once

#include <QString>

#include "linereading.h"

struct CreatureData;

namespace StatBlockParser {

// Fills the record with what it recognises, and keeps the rest as text of powers. True when at
// least 4 of the 8 fields that tell a stat block from prose are filled; the record is filled in any
// case. A trap or a hazard is disabled. Pictures are looked for in `dataFolder`. What each line was
// read as is added to `notes`, which may be null.
bool parse(CreatureData &record, const QString &text, bool isMonster, const QString &dataFolder,
           QList<LineNote> *notes = nullptr);

// Where a portrait's line belongs in a text.
struct PortraitPlace {
    qsizetype word = -1; // index of the word that begins it; -1 where no line names a portrait
    qsizetype titleEnd = 0; // index behind the title, which may have several lines
};
PortraitPlace portraitPlace(const QString &text);

} // namespace StatBlockParser
