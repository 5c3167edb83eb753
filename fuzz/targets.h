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
// Tidies a copied stat block twice, which is to change nothing more. True if it changed anything.
bool tidyCopiedText(QByteArrayView bytes);
// Reads a prepared encounter and works out what a manager shows of it. True if it was accepted.
bool readEncounterFile(QByteArrayView bytes);

// Decodes a portrait from the folder. True if it shows.
bool showPortrait(QByteArrayView bytes);
// Loads a file whose form nobody tells, from a folder with portraits in it, as a monster's and as a
// character's, shows the portraits, and writes the creature back. True if either is valid.
bool loadCreatureFile(QByteArrayView bytes);

// Reads a monster in XML and writes the headers of its powers. True if it is valid.
bool readMonsterXml(QByteArrayView bytes);
// Reads a character's import file. True if the XML was read and gives a valid character.
bool readCharacterXml(QByteArrayView bytes);

// --- with windows: these need a QApplication ---

// Opens the main window with the settings of that file. True if the file was one of settings.
bool openWithSettings(QByteArrayView bytes);
// Draws the panels, cells and messages of a creature whose file it is, and those of a text. True if
// the creature is valid.
bool paintTexts(QByteArrayView bytes);

} // namespace Fuzz
