// The text forms of a creature file, told apart and read into a CreatureData.
#pragma once

#include <QByteArray>
#include <QString>

#include "creaturedata.h"

class Characters;
class Monsters;

enum class CreatureForm { Key, StatBlock, MonsterXml, CharacterXml };

// XML by the first 200 bytes.
bool isXmlText(const QByteArray &bytes);

// Reads the key form. False unless it holds more than three known keys and the key name.
bool readKeyForm(const QByteArray &bytes, CreatureData &data, const QString &dataFolder);

// Reads a text of any form. The verdict is the reader's own; `form` may be null. XML is refused for
// a character.
bool parseText(bool isMonster, const QByteArray &text, CreatureData &data,
               const QString &dataFolder, CreatureForm *form = nullptr);

// Replaces a bad record by a visibly invalid one that keeps the text. False when it did.
bool validate(CreatureData &data, bool isMonster, const QString &fileName);

// Appends a number to the key name until no other creature of its kind has it.
void makeUnique(CreatureData &data, bool isMonster, const Monsters *monsters,
                const Characters *characters);

// The picture at that path below "Portraits". A file that isn't there is searched for by its bare
// name in all sub-folders; when found, `path` takes its place.
QString resolvePortrait(QString &path, const QString &dataFolder);
// Depth first, in directory order, without entries that begin with "."; the path relative to
// `folder`, or empty.
QString findPortrait(const QString &folder, const QString &fileName);
// Writes the portrait's path into a monster's text.
QString withPortraitInText(const QString &text, const QString &portrait);
