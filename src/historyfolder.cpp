#include "historyfolder.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <filesystem>

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

bool copyOrLink(const QString &path, const QString &copy)
{
    constexpr qint64 LargestCopy = 256 * 1024 * 1024;
    if (QFileInfo(path).size() <= LargestCopy && QFile::copy(path, copy))
        return true;
    std::error_code error;
    std::filesystem::create_hard_link(QFileInfo(path).canonicalFilePath().toStdString(),
                                      copy.toStdString(), error);
    return !error;
}

// `isCopy` tells whether a file of that prefix is a copy already.
template <typename IsCopy, typename MakeCopy>
QString keepLog(const QString &root, const QString &prefix, const QString &path, IsCopy isCopy,
                MakeCopy makeCopy)
{
    if (!makeHistoryFolder(root))
        return {};
    const QDir folder(root + QDir::separator() + FolderName);
    const QFileInfoList copies =
        folder.entryInfoList({prefix + QStringLiteral("*.log")}, QDir::Files);
    for (const QFileInfo &copy : copies) {
        if (isCopy(copy))
            return copy.filePath();
    }
    const QString copy = freeHistoryPath(root, prefix, currentDateTimeText());
    return makeCopy(path, copy) ? copy : QString();
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

QString copyDamagedLog(const QString &root, const QString &path, qint64 count)
{
    const auto isCopy = [&](const QFileInfo &file) {
        return file.size() >= count && beginAlike(path, file.filePath(), count);
    };
    const auto copy = [](const QString &from, const QString &to) { return QFile::copy(from, to); };
    return keepLog(root, QStringLiteral("history_damaged_"), path, isCopy, copy);
}

QString keepForeignLog(const QString &root, const QString &path)
{
    const qint64 size = QFileInfo(path).size();
    const auto isCopy = [&](const QFileInfo &file) {
        return file.size() == size && beginAlike(path, file.filePath(), size);
    };
    return keepLog(root, QStringLiteral("history_foreign_"), path, isCopy, copyOrLink);
}
