// One creature file as JSON, read alone.
#pragma once

#include <QJsonObject>

// What the readers make of the file, before and after validation. `content` is what stands in it.
QJsonObject creatureReport(const QString &path, const QByteArray &content);
