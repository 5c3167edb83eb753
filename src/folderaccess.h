// Whether a data folder is written to or only looked at, found out before anything of it is read.
#pragma once

#include <QString>
#include <memory>

#include "loglock.h"
#include "progress.h"

struct FolderAccess {
    // The lock of the folder, taken or not. Null for the folder that the history has the lock of
    // already.
    std::unique_ptr<LogLock> lock;
    // Why nothing may be written, as LogLock tells it; empty when the folder is written to.
    QString lookReason;

    bool isLookOnly() const { return !lookReason.isEmpty(); }
};

// Takes the lock of the folder. Where another program has it, or the log is there and can't be
// written, the user may look only, choose another folder (AskAgain) or cancel. A folder without a
// log that could be shown is entered as one to write to, and the first event tells that it can't
// be.
LoadResult seekAccess(const QString &path, const QString &display, FolderAccess &access);
