#include "folderaccess.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include "history.h"
#include "messagedialog.h"
#include "text.h"

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("FolderAccess", text);
}

bool opens(const QString &path, QIODevice::OpenMode mode)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(mode | QIODevice::ExistingOnly);
}

bool isShowable(const QString &folder)
{
    return opens(folder + QStringLiteral("/history.log"), QIODevice::ReadOnly);
}

// The log is there to be seen, but not to be written.
bool isSealed(const QString &folder)
{
    return isShowable(folder)
        && !opens(folder + QStringLiteral("/history.log"), QIODevice::ReadWrite);
}

LoadResult askToLook(const QString &title, const QString &text)
{
    enum Answer { Cancel, Look, SelectFolder };
    switch (askFolderMessage(title, text, translated("Look Only"))) {
    case Look:
        return LoadResult::Loaded;
    case SelectFolder:
        return LoadResult::AskAgain;
    default:
        return LoadResult::Cancelled;
    }
}

LoadResult askAboutHolder(const LogLock &lock, const QString &display)
{
    QString text = translated("The data folder <b>%1</b> is %2.<p>Only one program at a time can "
                              "write to a fight. You can look at it without changing anything, or "
                              "select another folder.")
                       .arg(asHtml(display), asHtml(lock.obstacle()));
    if (lock.isHolderOutOfSight())
        text += translated("<p>If that program is no longer running, remove the file %1.")
                    .arg(asHtml(lock.fileName()));
    return askToLook(translated("Data Folder in Use"), text);
}

LoadResult askAboutSealed(const QString &reason, const QString &display)
{
    return askToLook(translated("Data Folder Can't Be Written"),
                     translated("Nothing can be written to the data folder <b>%1</b>: %2.<p>You "
                                "can look at the fight without changing anything, or select "
                                "another folder.")
                         .arg(asHtml(display), asHtml(reason)));
}

} // namespace

LoadResult seekAccess(const QString &path, const QString &display, FolderAccess &access)
{
    const LogLock *own = theHistory->lock();
    const bool isOurs = own && own->isTaken() && own->isOf(path);
    if (isOurs && !isSealed(path))
        return LoadResult::Loaded;
    access.lock = std::make_unique<LogLock>(path);
    const LogLock::Result result = isOurs ? LogLock::Result::Taken : access.lock->take();
    if (result == LogLock::Result::HeldElsewhere) {
        access.lookReason = access.lock->obstacle();
        return askAboutHolder(*access.lock, display);
    }
    if (result == LogLock::Result::Taken && isSealed(path)) {
        access.lock->giveBack();
        access.lookReason = translated("the history file can't be written");
    } else if (result == LogLock::Result::Impossible && isShowable(path)) {
        access.lookReason = access.lock->obstacle();
    }
    return access.isLookOnly() ? askAboutSealed(access.lookReason, display) : LoadResult::Loaded;
}
