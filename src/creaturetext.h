// The forms of a creature's text: told apart, read into a CreatureData, and written.
#pragma once

#include <QByteArray>
#include <QString>

#include "creaturedata.h"
#include "linereading.h"

enum class CreatureForm { Key, StatBlock, MonsterXml, CharacterXml };

// XML by the first 200 bytes.
bool isXmlText(const QByteArray &bytes);

// Reads a text of any form into a fresh record that keeps the whole text. The verdict is the
// reader's own; `form` and `notes` may be null, and only a stat block's lines are noted. Monster
// XML is always taken, though broken XML leaves nothing but the text; XML is refused for a
// character.
bool parseText(bool isMonster, const QByteArray &text, CreatureData &data,
               const QString &dataFolder, CreatureForm *form = nullptr,
               QList<LineNote> *notes = nullptr);

// The text of a creature from its fields: key form for a character, a starter stat block for a
// monster.
QString textOf(const CreatureData &data);

// A creature's text with another name wherever the old one stands, whatever word it is part of;
// upper and lower case count. A text that has it only with other white space between its words, as
// a title of two lines, loses that. In XML both names are meant as they are read, not as they are
// escaped. An empty old name changes nothing.
QString replacedName(const QString &text, const QString &oldName, const QString &newName);

// Writes the portrait's path into a monster's text.
QString withPortraitInText(const QString &text, const QString &portrait);
// A monster's text without its portrait, to be compared with another. The line ends at its end go.
QString withoutPortraitInText(const QString &text);
