#include "libraryfolder.h"

#include <QCoreApplication>
#include <QDir>

#include "paths.h"
#include "text.h"
#include "windowinterface.h"

namespace {

// Leaves room for a number and the extension in a file system's limit of 255 bytes.
constexpr qsizetype maxStemLength = 70;

QString translated(const char *text)
{
    return QCoreApplication::translate("LibraryFolder", text);
}

WindowInterface::FolderAnswer ask(const char *title, const char *text, const char *button,
                                  const QString &displayFolder)
{
    return windows().askFolder(translated(title), translated(text).arg(asHtml(displayFolder)),
                               translated(button));
}

LoadResult toResult(WindowInterface::FolderAnswer answer)
{
    switch (answer) {
    case WindowInterface::FolderAnswer::Accept:
        return LoadResult::Loaded;
    case WindowInterface::FolderAnswer::SelectFolder:
        return LoadResult::AskAgain;
    case WindowInterface::FolderAnswer::Cancel:
        break;
    }
    return LoadResult::Cancelled;
}

LoadResult offerToCreate(const LibraryFolder &library, const QString &folder,
                         const QString &displayFolder)
{
    const LoadResult result =
        toResult(ask(QT_TRANSLATE_NOOP("LibraryFolder", "Directory not Found"), library.notFound,
                     QT_TRANSLATE_NOOP("LibraryFolder", "Create"), displayFolder));
    if (result == LoadResult::Loaded && !dataReadOnly)
        QDir().mkpath(folder);
    return result;
}

} // namespace

LoadResult loadLibraryFolder(const LibraryFolder &library, const QString &dataFolder,
                             const QString &displayFolder, Progress &progress,
                             const std::function<bool(const QString &)> &loadFile)
{
    progress.setLabel(translated(library.loading));
    const QDir dir(library.path(dataFolder));
    if (!dir.exists())
        return offerToCreate(library, dir.path(), displayFolder);
    bool anyLoaded = false;
    const QStringList names = dir.entryList();
    for (const QString &name : names) {
        anyLoaded |= loadFile(name);
        progress.step();
        if (progress.wasCancelled())
            return LoadResult::Cancelled;
    }
    if (anyLoaded)
        return LoadResult::Loaded;
    return toResult(ask(library.nothingTitle, library.nothing,
                        QT_TRANSLATE_NOOP("LibraryFolder", "Continue"), displayFolder));
}

int libraryFileCount(const LibraryFolder &library, const QString &dataFolder)
{
    const QDir dir(library.path(dataFolder));
    return dir.exists() ? int(dir.count()) : 0;
}

QString fileStem(const QString &name, const QString &fallback)
{
    QString stem;
    for (const char32_t c : name.toLower().toStdU32String()) {
        if (QChar::isSpace(c) || QChar::category(c) == QChar::Other_Control)
            stem += u'-';
        else if (QChar::isLetter(c) || QChar::isDigit(c))
            stem += QChar::fromUcs4(c);
        if (stem.size() >= maxStemLength)
            break;
    }
    return stem.isEmpty() ? fallback : stem;
}

QString unusedFileName(const QString &folder, const QString &stem, const QString &extension)
{
    const QDir dir(folder);
    QString name = stem + u'.' + extension;
    for (int number = 1; dir.exists(name); ++number)
        name = QStringLiteral("%1_%2.%3").arg(stem).arg(number).arg(extension);
    return name;
}
