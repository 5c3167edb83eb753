// The text forms of a creature file, told apart and read into a CreatureData.
#pragma once

#include <QByteArray>
#include <QString>

#include "creaturedata.h"

class Characters;
class Creature;
class Monsters;

enum class CreatureForm { Key, StatBlock, MonsterXml, CharacterXml };

// XML by the first 200 bytes.
bool isXmlText(const QByteArray &bytes);
// A file that "Characters" never reads: by its name a Character Builder file, or by its first byte
// XML of any kind.
bool isForeignCharacterFile(const QString &fileName, const QByteArray &bytes);

// Reads the key form for data.isMonster. False, and data as it was, unless the bytes hold more than
// three known keys and the key name.
bool readKeyForm(const QByteArray &bytes, CreatureData &data, const QString &dataFolder);

// Reads a text of any form into a fresh record that keeps the whole text. The verdict is the
// reader's own; `form` may be null. Monster XML is always taken, though broken XML leaves nothing
// but the text; XML is refused for a character.
bool parseText(bool isMonster, const QByteArray &text, CreatureData &data,
               const QString &dataFolder, CreatureForm *form = nullptr);

// Whether a creature may be called so: printable, and not too long.
bool isUsableName(const QString &name);

// Replaces a bad record by a visibly invalid one that keeps the text. False when it did.
bool validate(CreatureData &data, bool isMonster, const QString &fileName);

// Appends a number to the key name until no other creature of its kind but `self` has it. The
// collection of the other kind may be null.
void makeUnique(CreatureData &data, bool isMonster, const Monsters *monsters,
                const Characters *characters, const Creature *self = nullptr);

// The text of a creature from its fields: key form for a character, a starter stat block for a
// monster.
QString textOf(const CreatureData &data);

// Writes the portrait's path into a monster's text.
QString withPortraitInText(const QString &text, const QString &portrait);
