// The text forms of a creature file, told apart and read into a CreatureData; and its picture.
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

// Checks the picture that `path` names below "Portraits", without decoding it. Where there is none,
// the file is searched for by its bare name in all sub-folders; when found, its path takes the
// place of `path`.
void resolvePortrait(QString &path, const QString &dataFolder);
// Depth first, in directory order, without entries that begin with "."; the path relative to
// `folder`, or empty.
QString findPortrait(const QString &folder, const QString &fileName);
// What a creature stores for a picture that the user chose: its path below "Portraits". A file from
// elsewhere is copied there unless one of its name exists. Empty when it couldn't be copied. Where
// copying is forbidden, the answer is what it would be.
enum class PortraitCopy { Allowed, Forbidden };
QString adoptPortrait(const QString &chosenFile, const QString &dataFolder,
                      PortraitCopy copy = PortraitCopy::Allowed);
// Writes the portrait's path into a monster's text.
QString withPortraitInText(const QString &text, const QString &portrait);

// While one lives, findPortrait() walks a folder once for all searches: a library that was moved
// would otherwise walk it for each creature.
class PortraitSearch {
public:
    PortraitSearch();
    ~PortraitSearch();
    PortraitSearch(const PortraitSearch &) = delete;
    PortraitSearch &operator=(const PortraitSearch &) = delete;
};
