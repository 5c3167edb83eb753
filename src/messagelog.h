// The toolkit's messages in a text file.
#pragma once

#include <QtGlobal>

class QMessageLogContext;
class QString;

// Installed before any toolkit object exists. Writes to logFile only if that file is already open,
// which nothing in the program does: in an ordinary run the messages go nowhere.
void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &text);
