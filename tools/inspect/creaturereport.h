// One creature file as JSON, read alone.
#pragma once

#include <QJsonObject>

struct CreatureData;

// Every field of the record under its own name, without statBlock and the picture.
QJsonObject recordReport(const CreatureData &data);

// What the readers make of the file, before and after validation. `content` is what stands in it.
QJsonObject creatureReport(const QString &path, const QByteArray &content);
