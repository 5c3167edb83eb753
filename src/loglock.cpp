#include "loglock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <algorithm>

namespace {

// Milliseconds; who only looks holds the lock for less than one.
constexpr int Patience = 200;
// Milliseconds after which an empty lock isn't one that is just being written.
constexpr qint64 WrittenAfter = 10'000;
// Bytes; a lock holds four short lines.
constexpr qint64 LargestLock = 4096;

QString translated(const char *text)
{
    return QCoreApplication::translate("LogLock", text);
}

// Two paths of one folder give the same text.
QString realPath(const QString &folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    return path.isEmpty() ? QDir::cleanPath(QFileInfo(folder).absoluteFilePath()) : path;
}

// True for what would block the attempt for ever (a pipe), lead elsewhere (a link) or can't be
// replaced (a folder, a large file).
bool isNoLock(const QString &path)
{
    const QFileInfo file(path);
    return file.isSymLink() || (file.exists() && (!file.isFile() || file.size() > LargestLock));
}

std::unique_ptr<QLockFile> makeFile(const QString &path)
{
    auto file = std::make_unique<QLockFile>(path);
    file->setStaleLockTime(0);
    return file;
}

// All of it zeros, which a power cut makes of a file that was just written.
bool isBlank(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
}

} // namespace

LogLock::LogLock(const QString &folder)
    : m_folder(realPath(folder)), m_file(makeFile(folder + QStringLiteral("/history.log.lock")))
{
}

LogLock::~LogLock()
{
    giveBack();
}

LogLock::Result LogLock::take()
{
    return isTaken() ? Result::Taken : attempt(Patience);
}

void LogLock::giveBack()
{
    if (isTaken() && !isStillOurs())
        abandon();
    m_file->unlock();
}

void LogLock::renew()
{
    if (!isTaken() || QFileInfo::exists(fileName()))
        return;
    abandon();
    attempt(0);
}

bool LogLock::isStillOurs() const
{
    const Content content = read();
    return content.kind == Content::Holder && content.isOfThisHost()
        && content.process == QCoreApplication::applicationPid();
}

// The toolkit would remove what lies there under the name by now, which may be the lock of another.
void LogLock::abandon()
{
    static auto *const abandoned = new QList<QLockFile *>; // for good
    const QString name = fileName();
    abandoned->append(m_file.release());
    m_file = makeFile(name);
}

bool LogLock::isHeldElsewhere()
{
    if (isTaken() || !QFileInfo::exists(fileName()))
        return false;
    const Result result = attempt(0);
    giveBack();
    return result == Result::HeldElsewhere;
}

bool LogLock::isOf(const QString &folder) const
{
    return realPath(folder) == m_folder;
}

LogLock::Result LogLock::attempt(int patience)
{
    m_obstacle.clear();
    m_holderOutOfSight = false;
    for (const QString &path : {fileName(), removerName()}) {
        if (isNoLock(path))
            return isInTheWay(path);
    }
    // Who only looks removes nothing but what the toolkit knows to be dead, and makes no files.
    if (m_file->tryLock(patience) || (patience > 0 && removeLeftOver() && m_file->tryLock(0))) {
        m_folder = realPath(QFileInfo(fileName()).path());
        return Result::Taken;
    }
    if (m_file->error() != QLockFile::LockFailedError) {
        m_obstacle = translated("the folder can't be written");
        return Result::Impossible;
    }
    return describeHolder();
}

// For when the toolkit sees a holder or can't tell. The system's own lock on the file dies with its
// holder, so the file is removed only where nobody has that lock; another process with the number
// of the dead one doesn't count as its holder. One remover at a time, or the second would take the
// first one's new lock away.
bool LogLock::removeLeftOver()
{
    QLockFile remover(removerName());
    if (m_file->error() != QLockFile::LockFailedError || !remover.tryLock(0))
        return false;
    const Content content = read();
    switch (content.kind) {
    case Content::Holder:
        return content.isOfThisHost() && m_file->removeStaleLockFile();
    case Content::Blank: {
        const QDateTime written = QFileInfo(fileName()).lastModified();
        return written.msecsTo(QDateTime::currentDateTimeUtc()) > WrittenAfter
            && m_file->removeStaleLockFile();
    }
    case Content::Unreadable:
    case Content::Foreign:
        break;
    }
    return false;
}

LogLock::Content LogLock::read() const
{
    Content content;
    QFile file(fileName());
    if (m_file->getLockInfo(&content.process, &content.host, &content.program))
        content.kind = Content::Holder;
    else if (!file.open(QIODevice::ReadOnly))
        content.kind = Content::Unreadable;
    else
        content.kind = isBlank(file.readAll()) ? Content::Blank : Content::Foreign;
    return content;
}

LogLock::Result LogLock::describeHolder()
{
    const Content content = read();
    if (content.kind == Content::Foreign)
        return isInTheWay(fileName());
    m_holderOutOfSight = content.kind != Content::Holder || !content.isOfThisHost();
    m_obstacle = content.kind == Content::Holder
        ? translated("in use by %1, process %2 on %3")
              .arg(content.program, QString::number(content.process), content.host)
        : translated("in use by another program");
    return Result::HeldElsewhere;
}

LogLock::Result LogLock::isInTheWay(const QString &path)
{
    m_obstacle = translated("%1 is in the way").arg(QFileInfo(path).fileName());
    return Result::Impossible;
}

QString LogLock::removerName() const
{
    return fileName() + QStringLiteral(".rmlock");
}

bool LogLock::Content::isOfThisHost() const
{
    return host.isEmpty() || host == QSysInfo::machineHostName();
}
