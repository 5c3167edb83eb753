// A creature's file: what may be read from it into a collection, and its way back.
#pragma once

#include <QByteArray>
#include <QString>

#include "creature.h"

// A file that "Characters" never reads: by its name a Character Builder file, or by its first byte
// XML of any kind.
bool isForeignCharacterFile(const QString &fileName, const QByteArray &bytes);

// Whether a creature may be called so: printable, and not too long.
bool isUsableName(const QString &name);

// Replaces a bad record by a visibly invalid one that keeps the text. False when it did.
bool validate(CreatureData &data, bool isMonster, const QString &fileName);

// Appends a number to the key name while another creature of its kind than `self` has it. With an
// empty function every name is free.
void makeUnique(CreatureData &data, bool isMonster, const UniqueName &uniqueName,
                const Creature *self = nullptr);

// Removes the creature's file. True too when there is none.
bool removeCreatureFile(const Creature &creature, bool isMonster);
