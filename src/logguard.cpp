#include "logguard.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "historyfolder.h"
#include "objectstream.h"
#include "paths.h"
#include "safefile.h"
#include "text.h"

namespace {

// Holds most logs as a whole and the last records of any, and takes a few microseconds to compare.
constexpr qint64 LastBytes = 64 * 1024;

QString translated(const char *text)
{
    return QCoreApplication::translate("LogGuard", text);
}

bool statusOf(const QString &path, struct stat &status)
{
    return stat(QFile::encodeName(path).constData(), &status) == 0;
}

bool isSame(const timespec &one, const timespec &other)
{
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

LogGuard::Stamp stampOf(const struct stat &status)
{
    return {status.st_ino, status.st_mtim, status.st_ctim};
}

QString messageText(const QString &path, const QString &copy, bool isBack)
{
    QString text = translated("The history file, <b>%1</b>, was changed or removed by another "
                              "program. Nothing of the fight is lost: Morvane keeps it in memory.")
                       .arg(asHtml(path));
    text += isBack ? translated("<p>The file has been written anew.")
                   : translated("<p>The file can't be written anew at the moment. It will be as "
                                "soon as the disk takes it.");
    if (!copy.isEmpty())
        text += translated("<p>What stood there is kept: <b>%1</b>").arg(asHtml(copy));
    return text;
}

} // namespace

bool LogGuard::Stamp::operator==(const Stamp &other) const
{
    return file == other.file && isSame(modified, other.modified) && isSame(changed, other.changed);
}

LogGuard::LogGuard(ObjectStream &stream, const QString &root)
    : m_stream(stream), m_root(root), m_path(historyPath(root))
{
    struct stat status = {};
    if (statusOf(m_root, status))
        m_disk = status.st_dev;
    if (fstat(stream.handle(), &status) == 0)
        m_stamp = stampOf(status);
    m_writes = stream.writeCount();
}

bool LogGuard::check()
{
    if (!m_stream.isDetached() && isUntouched())
        return false;
    // First of all nothing more is written to a file that isn't the log.
    m_stream.detach();
    QString copy;
    const bool isBack = putBack(copy);
    if (!m_isAway || copy != m_copy || m_isFolderNew)
        m_message += messageText(m_path, copy, isBack);
    if (std::exchange(m_isFolderNew, false))
        m_message += translated("<p>Its folder was gone and has been made again, but not the "
                                "creatures and encounters in it.");
    m_isAway = !isBack;
    m_copy = isBack ? QString() : copy;
    return isBack;
}

QString LogGuard::takeMessage()
{
    return std::exchange(m_message, QString());
}

// Between two commands a change shows in the file's times, and the whole file is then compared.
// After a command the times are the program's own, so only the last bytes are compared.
bool LogGuard::isUntouched()
{
    struct stat open = {};
    struct stat there = {};
    if (fstat(m_stream.handle(), &open) != 0 || !statusOf(m_path, there)
        || open.st_dev != there.st_dev || open.st_ino != there.st_ino)
        return false;
    const qint64 end = m_stream.written().size();
    if (there.st_size != m_stream.writtenSize())
        return false;
    const Stamp stamp = stampOf(there);
    const bool hasWritten = std::exchange(m_writes, m_stream.writeCount()) != m_writes;
    const bool isStrange = std::exchange(m_stamp, stamp) != stamp && !hasWritten;
    return holds(isStrange ? 0 : qMax<qint64>(0, end - LastBytes), end);
}

// Whether these bytes of the file are those that were written.
bool LogGuard::holds(qint64 from, qint64 end) const
{
    constexpr qint64 Chunk = 1024 * 1024;
    QByteArray bytes;
    while (from < end) {
        bytes.resize(qMin(Chunk, end - from));
        const ssize_t got = pread(m_stream.handle(), bytes.data(), size_t(bytes.size()), from);
        if (got <= 0 || m_stream.written().sliced(from, got) != QByteArrayView(bytes).first(got))
            return false;
        from += got;
    }
    return true;
}

// `copy` becomes the path of the one that is kept of a foreign file.
bool LogGuard::putBack(QString &copy)
{
    const QFileInfo foreign(m_path);
    // A pipe, a folder or a link that leads nowhere can't be kept, and isn't ours to remove.
    if ((foreign.exists() || foreign.isSymLink()) && !foreign.isFile())
        return false;
    if (!foreign.exists()) {
        if (!makeFolder())
            return false;
    } else if (foreign.size() > 0) {
        copy = keepForeignLog(m_root, m_path);
        if (copy.isNull())
            return false;
    }
    if (!saveWhole(m_path, m_stream.wholeLog()))
        return false;
    auto file = std::make_unique<QFile>(m_path);
    if (!file->open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        return false;
    m_stream.replaceDevice(file.release());
    return true;
}

// The data folder, if it was removed. Not where another disk shows in place of one that was pulled.
bool LogGuard::makeFolder()
{
    struct stat status = {};
    if (statusOf(m_root, status))
        return status.st_dev == m_disk;
    const QString parent = QFileInfo(QDir(m_root).absolutePath()).path();
    if (!statusOf(parent, status) || status.st_dev != m_disk || !QDir().mkdir(m_root))
        return false;
    for (const char *name : {"Characters", "Monsters", "Portraits", "Encounters"})
        QDir().mkdir(m_root + QDir::separator() + QLatin1String(name));
    m_isFolderNew = true;
    return true;
}
