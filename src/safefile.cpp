#include "safefile.h"

#include <QFileInfo>
#include <QSaveFile>

#include "text.h"

namespace {

constexpr qint64 headBytes = 4096;

} // namespace

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

FileText readTextFile(const QString &path, QByteArray &bytes)
{
    // A pipe or device would keep the program waiting.
    if (!QFileInfo(path).isFile())
        return FileText::None;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return FileText::None;
    const bool isTooLarge = file.size() > LargestText;
    bytes = withoutByteOrderMark(isTooLarge ? file.read(headBytes) : file.readAll());
    if (bytes.isEmpty())
        return FileText::None;
    return isTooLarge ? FileText::TooLarge : FileText::Read;
}
