#include "safefile.h"

#include <QSaveFile>

bool saveWhole(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // On a full disk commit() alone would move a file that was cut short into place.
    if (file.write(content) != content.size() || !file.flush()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}
