// The "History" folder of a data folder, which keeps copies of logs under names of their own.
#pragma once

#include <QString>

// Makes the folder where it isn't there yet. False when that fails.
bool makeHistoryFolder(const QString &root);
// A path in the folder that no file has: the prefix and the date, with a number where that is
// taken. The date comes out of a file, but doesn't lead out of the folder.
QString freeHistoryPath(const QString &root, const QString &prefix, const QString &date);
// Keeps a copy of a log of which nobody could read some of the first `count` bytes. The path of the
// copy, which may be one of an earlier start; null when there is none.
QString copyDamagedLog(const QString &root, const QString &path, qint64 count);
// The same for a file that another one is about to replace. Where a copy would take too long or
// finds no room, the file gets a second name.
QString keepForeignLog(const QString &root, const QString &path);
