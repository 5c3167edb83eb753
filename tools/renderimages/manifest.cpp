#include "manifest.h"

#include <QFile>
#include <QStringList>

namespace {

QSize parseSize(const QString &text)
{
    const QStringList sides = text.split(u'x');
    const int width = sides.first().toInt();
    const int height = sides.last().toInt();
    return sides.size() <= 2 && width > 0 && height > 0 ? QSize(width, height) : QSize();
}

} // namespace

QString Picture::fileName(int scale) const
{
    if (scale == 1)
        return name;
    const qsizetype dot = name.lastIndexOf(u'.');
    return QStringLiteral("%1@%2x%3").arg(name.left(dot)).arg(scale).arg(name.mid(dot));
}

bool readManifest(const QString &fileName, QList<Picture> &pictures, QString &error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString());
        return false;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).simplified();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const QStringList fields = line.split(u' ');
        const QSize size = fields.size() == 3 ? parseSize(fields.at(2)) : QSize();
        if (!size.isValid()) {
            error = QStringLiteral("%1:%2: expected a name, a source and a size")
                        .arg(fileName)
                        .arg(i + 1);
            return false;
        }
        pictures << Picture {fields.at(0), fields.at(1), size};
    }
    return true;
}
