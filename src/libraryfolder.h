// What the collections share on disk: the walk through one folder of the data folder, and the name
// of a new file.
#pragma once

#include <QString>
#include <functional>

#include "progress.h"

// One collection's folder and its texts, for translation in the context "LibraryFolder"; %1 is the
// data folder as told to the user.
struct LibraryFolder {
    QString (*path)(const QString &dataFolder);
    const char *loading;
    const char *notFound;
    const char *nothingTitle;
    const char *nothing;
};

// Hands each file name of the folder to `loadFile`, whose answer tells whether it gave an entry.
// A folder that is missing or gives nothing is a question to the user.
LoadResult loadLibraryFolder(const LibraryFolder &library, const QString &dataFolder,
                             const QString &displayFolder, Progress &progress,
                             const std::function<bool(const QString &)> &loadFile);
// Number of steps of the above, "." and ".." included; 0 when the folder doesn't exist.
int libraryFileCount(const LibraryFolder &library, const QString &dataFolder);

// A file name made from a creature's or encounter's name, without extension; `fallback` when no
// character of it is fit.
QString fileStem(const QString &name, const QString &fallback);
// "stem.extension", or with "_1", "_2" and so on where files of that name stand already.
QString unusedFileName(const QString &folder, const QString &stem, const QString &extension);
