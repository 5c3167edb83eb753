// Writing a file of the library: the new content as a whole, or the old one as it was.
#pragma once

#include <QByteArray>
#include <QString>

// False when the file can't be opened, written in full or moved into place; the old file then
// still stands.
bool saveWhole(const QString &path, const QByteArray &content);
