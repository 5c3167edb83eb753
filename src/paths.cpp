#include "paths.h"

#include <QDir>

QString dataRoot;
QString displayRoot;
bool dataReadOnly = false;

namespace {

QString pathBelow(const QString &root, const QString &folder, const QString &name)
{
    const QString &base = root.isEmpty() ? dataRoot : root;
    return base + QDir::separator() + folder + QDir::separator() + name;
}

} // namespace

QString encounterPath(const QString &fileName, const QString &root)
{
    return pathBelow(root, QStringLiteral("Encounters"), fileName);
}

QString creaturePath(const QString &fileName, bool isMonster, const QString &root)
{
    return pathBelow(root, isMonster ? QStringLiteral("Monsters") : QStringLiteral("Characters"),
                     fileName);
}

QString portraitPath(const QString &name, const QString &root)
{
    // A data folder moves between systems, so the slashes of any system are understood.
    QString native = name;
    native.replace(u'\\', u'/');
    native.remove(QChar(0)); // no file has one in its name, and the toolkit warns of it
    return pathBelow(root, QStringLiteral("Portraits"), QDir::toNativeSeparators(native));
}

QString historyPath(const QString &root)
{
    return (root.isEmpty() ? dataRoot : root) + QDir::separator() + QStringLiteral("history.log");
}
