#include "historyfolder.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include "version.h"

namespace {

constexpr QLatin1String FolderName("History");

// Whether both files begin with the same bytes.
bool beginAlike(const QString &path, const QString &other, qint64 count)
{
    QFile one(path);
    QFile two(other);
    if (!one.open(QIODevice::ReadOnly) || !two.open(QIODevice::ReadOnly))
        return false;
    constexpr qint64 Chunk = 1024 * 1024;
    while (count > 0) {
        const QByteArray bytes = one.read(qMin(count, Chunk));
        if (bytes.isEmpty() || bytes != two.read(bytes.size()))
            return false;
        count -= bytes.size();
    }
    return true;
}

} // namespace

bool makeHistoryFolder(const QString &root)
{
    const QDir parent(root);
    return QDir(parent.filePath(FolderName)).exists() || parent.mkdir(FolderName);
}

QString freeHistoryPath(const QString &root, const QString &prefix, const QString &date)
{
    static const QRegularExpression unfit(QStringLiteral("[/\\\\\\x00-\\x1f]"));
    QString stem = prefix + date;
    stem.replace(unfit, QStringLiteral("_"));
    const QString start = root + QDir::separator() + FolderName + QDir::separator() + stem;
    QString path = start + QStringLiteral(".log");
    for (int number = 2; QFile::exists(path); ++number)
        path = start + u'_' + QString::number(number) + QStringLiteral(".log");
    return path;
}

QString copyLog(const QString &root, const QString &prefix, const QString &path)
{
    if (!makeHistoryFolder(root))
        return {};
    const QString copy = freeHistoryPath(root, prefix, currentDateTimeText());
    return QFile::copy(path, copy) ? copy : QString();
}

QString copyDamagedLog(const QString &root, const QString &path, qint64 count)
{
    const QString prefix = QStringLiteral("history_damaged_");
    const QDir folder(root + QDir::separator() + FolderName);
    const QFileInfoList copies =
        folder.entryInfoList({prefix + QStringLiteral("*.log")}, QDir::Files);
    for (const QFileInfo &copy : copies) {
        if (copy.size() >= count && beginAlike(path, copy.filePath(), count))
            return copy.filePath();
    }
    return copyLog(root, prefix, path);
}
