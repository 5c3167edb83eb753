// A creature as lines of "key=value": the form in which characters are written.
#pragma once

#include <QByteArray>
#include <QString>

struct CreatureData;

// Reads the key form for data.isMonster. False, and data as it was, unless the bytes hold more than
// three known keys and the key name. The picture is looked for in `dataFolder`.
bool readKeyForm(const QByteArray &bytes, CreatureData &data, const QString &dataFolder);

// Whether readKeyForm() takes the bytes, as a monster's or as a character's.
bool isKeyForm(const QByteArray &bytes);

// What the keys tell of a character, and the stat block that it once was as one line.
QString keyFormOf(const CreatureData &data);

// Writes the portrait's path as a "key=value" line, the only form of it that a load of such a text
// reads. False, and the text as it was, for a text that isn't a monster's key form.
bool putPortraitIntoKeyForm(QString &text, const QString &portrait);
// Takes that line out; false as above.
bool takePortraitFromKeyForm(QString &text);
