// The readers of foreign bytes as functions of bytes alone, for the fuzzers and for the test that
// replays their corpora. Each returns for any input whatever.
#pragma once

#include <QByteArray>

namespace Fuzz {

// Replays a log, undoes it to the start, redoes it, and asks for all texts. True if the log read
// clean to its end and held an event.
bool replayLog(QByteArrayView bytes);
// Reads a creature file in key form, as a monster's and as a character's. True if either is valid.
bool readKeyFormFile(QByteArrayView bytes);
// Reads a stat block, as a monster's and as a character's, and writes the headers of its powers.
// True if either is valid.
bool readStatBlockFile(QByteArrayView bytes);
// Reads a prepared encounter and works out what a manager shows of it. True if it was accepted.
bool readEncounterFile(QByteArrayView bytes);

// Reads a monster in XML and writes the headers of its powers. True if it is valid.
bool readMonsterXml(QByteArrayView bytes);
// Reads a character's import file. True if the XML was read and gives a valid character.
bool readCharacterXml(QByteArrayView bytes);

} // namespace Fuzz
