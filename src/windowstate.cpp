#include "windowstate.h"

#include <QCryptographicHash>
#include <QSettings>

namespace {

QString checkKey(const QString &key)
{
    return key + QStringLiteral("Check");
}

QString checksum(const QByteArray &state)
{
    return QString::fromLatin1(QCryptographicHash::hash(state, QCryptographicHash::Sha1).toHex());
}

} // namespace

void keepWindowState(const QString &key, const QByteArray &state)
{
    QSettings settings;
    settings.setValue(key, state);
    settings.setValue(checkKey(key), checksum(state));
}

QByteArray keptWindowState(const QString &key)
{
    const QSettings settings;
    const QByteArray state = settings.value(key).toByteArray();
    return settings.value(checkKey(key)).toString() == checksum(state) ? state : QByteArray();
}
