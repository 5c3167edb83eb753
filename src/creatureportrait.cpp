#include "creatureportrait.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPixmapCache>
#include <QSet>

#include <functional>

#include "paths.h"
#include "picturefile.h"

namespace {

// No widget shows a portrait larger, on a screen of double density.
constexpr int maxPortraitSize = 600;
// Deeper than anyone sorts pictures; the bound keeps a strange folder from filling the stack.
constexpr int maxPortraitDepth = 32;

using PortraitVisitor = std::function<bool(const QString &name, const QString &relativePath)>;

// Stops, with true, when the visitor says so. `seen` holds the folders that were entered, so that a
// link back up is not followed in a circle.
bool walkPortraits(const QDir &folder, const QString &prefix, int depth, QSet<QString> &seen,
                   const PortraitVisitor &visit)
{
    const QString canonical = folder.canonicalPath();
    if (depth > maxPortraitDepth || canonical.isEmpty() || seen.contains(canonical))
        return false;
    seen.insert(canonical);
    const QFileInfoList entries = folder.entryInfoList();
    for (const QFileInfo &entry : entries) {
        const QString name = entry.fileName();
        if (name.startsWith(u'.'))
            continue;
        // A link may lead anywhere, and back up in a circle.
        if (entry.isDir() && entry.isSymLink())
            continue;
        const QString path = prefix + name;
        if (entry.isDir()
                ? walkPortraits(QDir(entry.filePath()), path + u'/', depth + 1, seen, visit)
                : visit(name, path))
            return true;
    }
    return false;
}

void walkPortraits(const QString &folder, const PortraitVisitor &visit)
{
    QSet<QString> seen;
    walkPortraits(QDir(folder), QString(), 0, seen, visit);
}

// File name to the path that the walk finds first, for each folder.
using PortraitIndex = QHash<QString, QString>;
int runningSearches = 0;
QHash<QString, PortraitIndex> &portraitIndexes()
{
    static QHash<QString, PortraitIndex> indexes;
    return indexes;
}

const PortraitIndex &portraitIndex(const QString &folder)
{
    const auto known = portraitIndexes().constFind(folder);
    if (known != portraitIndexes().constEnd())
        return *known;
    PortraitIndex &index = portraitIndexes()[folder];
    walkPortraits(folder, [&index](const QString &name, const QString &path) {
        if (!index.contains(name))
            index.insert(name, path);
        return false;
    });
    return index;
}

// Whether the file really lies in the folder, whatever its name or a link on the way says.
bool isInPortraits(const QString &path, const QString &dataFolder)
{
    const QString folder = QDir(portraitPath(QString(), dataFolder)).canonicalPath();
    const QString place = QFileInfo(portraitPath(path, dataFolder)).dir().canonicalPath();
    return !folder.isEmpty() && (place == folder || place.startsWith(folder + u'/'));
}

QString bareName(const QString &path)
{
    return path.mid(qMax(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}

} // namespace

void resolvePortrait(QString &path, const QString &dataFolder)
{
    if (path.isEmpty()
        || (isInPortraits(path, dataFolder) && isPictureFile(portraitPath(path, dataFolder))))
        return;
    const QString found = findPortrait(portraitPath(QString(), dataFolder), bareName(path));
    if (!found.isEmpty())
        path = found;
}

QString findPortrait(const QString &folder, const QString &fileName)
{
    if (fileName.isEmpty())
        return QString();
    if (runningSearches > 0)
        return portraitIndex(folder).value(fileName);
    QString found;
    walkPortraits(folder, [&](const QString &name, const QString &path) {
        if (name == fileName)
            found = path;
        return !found.isEmpty();
    });
    return found;
}

QString adoptPortrait(const QString &chosenFile, const QString &dataFolder, PortraitCopy copy)
{
    const QString folder =
        QDir::cleanPath(QDir(portraitPath(QString(), dataFolder)).absolutePath());
    const QString chosen = QDir::cleanPath(QFileInfo(chosenFile).absoluteFilePath());
    if (!isPictureFile(chosen))
        return QString();
    if (chosen.startsWith(folder + u'/'))
        return chosen.mid(folder.size() + 1);
    const QString name = QFileInfo(chosen).fileName();
    const QString found = findPortrait(folder, name);
    if (!found.isEmpty())
        return found;
    // Two letters in front make a picture of many a file that nobody wants here.
    if (readPicture(chosen, maxPortraitSize).isNull())
        return QString();
    if (copy == PortraitCopy::Forbidden || dataReadOnly)
        return name;
    // A data folder that came without pictures has no place for them yet.
    return QDir().mkpath(folder) && QFile::copy(chosen, folder + u'/' + name) ? name : QString();
}

PortraitSearch::PortraitSearch()
{
    ++runningSearches;
}

PortraitSearch::~PortraitSearch()
{
    if (--runningSearches == 0)
        portraitIndexes().clear();
}

QPixmap readPortrait(const QString &name)
{
    if (name.isEmpty() || !isInPortraits(name, QString()))
        return QPixmap();
    const QString path = portraitPath(name);
    // The clones of a monster share one picture.
    const QString key =
        path + u'|' + QString::number(QFileInfo(path).lastModified().toMSecsSinceEpoch());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = QPixmap::fromImage(readPicture(path, maxPortraitSize));
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}
