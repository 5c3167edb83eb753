// A window's layout in the settings.
#pragma once

#include <QByteArray>
#include <QString>

// Beside a checksum, without which a damaged layout may keep the toolkit reading for minutes.
void keepWindowState(const QString &key, const QByteArray &state);
// Empty where none was kept, or not as it is now.
QByteArray keptWindowState(const QString &key);
