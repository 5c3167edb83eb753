#include "messagelog.h"

#include <QDir>
#include <QTextStream>

#include <cstdlib>

#include "global.h"

namespace {

bool reopenLog()
{
    logFile.close();
    logFile.setFileName(QDir::homePath() + QDir::separator() + QStringLiteral("morvane.log"));
    return logFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}

// Null for a type that isn't written.
const char *prefixOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "";
    case QtWarningMsg:
        return "Warning: ";
    case QtCriticalMsg:
        return "Critical: ";
    case QtFatalMsg:
        return "Fatal: ";
    default:
        return nullptr;
    }
}

} // namespace

void logMessageHandler(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    // The guard is this way round on purpose: only a log that someone has opened is written.
    const bool isWritable = logFile.isOpen() && reopenLog();
    const char *prefix = prefixOf(type);
    if (isWritable && prefix) {
        QTextStream stream(&logFile);
        stream << prefix << text << Qt::endl;
    }
    if (type == QtFatalMsg)
        std::abort();
}
