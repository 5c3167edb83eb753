// Reading and writing a text file of the data folder.
#pragma once

#include <QByteArray>
#include <QString>

// False when the file can't be opened, written in full or moved into place; the old file then
// still stands.
bool saveWhole(const QString &path, const QByteArray &content);

// A text of the library has a few kilobytes; this only keeps a misplaced giant out of memory.
constexpr qint64 LargestText = 16 * 1024 * 1024;

// The bytes of a regular file, without a byte order mark. TooLarge: over LargestText, of which the
// bytes are the first few thousand. None: empty, unreadable, or no regular file; a pipe or device
// is never opened.
enum class FileText { None, Read, TooLarge };
FileText readTextFile(const QString &path, QByteArray &bytes);
