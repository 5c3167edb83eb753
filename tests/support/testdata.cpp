#include "testdata.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include "characters.h"
#include "encounters.h"
#include "monsters.h"
#include "paths.h"
#include "text.h"

TestDataFolder::TestDataFolder()
{
    for (const char *name : {"Characters", "Monsters", "Portraits", "Encounters"})
        QDir(m_dir.path()).mkdir(QLatin1String(name));
    dataRoot = m_dir.path();
    displayRoot = dataRoot;
}

TestDataFolder::~TestDataFolder()
{
    dataRoot = QString();
    displayRoot = QString();
}

void TestDataFolder::write(const QString &relative, const QString &text) const
{
    QFile out(file(relative));
    if (!out.open(QIODevice::WriteOnly) || out.write(toCRLF(text.toUtf8())) < 0)
        qFatal("cannot write %s", qPrintable(out.fileName()));
}

QByteArray TestDataFolder::read(const QString &relative) const
{
    QFile in(file(relative));
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

QMap<QString, QByteArray> TestDataFolder::files() const
{
    QMap<QString, QByteArray> found;
    const QDir root(path());
    QDirIterator it(root.path(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = root.relativeFilePath(it.next());
        found.insert(file, read(file));
    }
    return found;
}

void TestDataFolder::addCharacter(const QString &name, int maxHP, int initiative) const
{
    write(QStringLiteral("Characters/%1.txt").arg(name.toLower()),
          QStringLiteral("name=%1\nclass=Fighter\nrace=Human\nrole=Defender\nlevel=1\n"
                         "hit-points=%2\nhs-value=%3\nhs-resources=8\ninitiative=%4\nspeed=6\n"
                         "ap-resources=1\narmour-class=17\nfortitude=15\nreflex=13\nwill=12\n")
              .arg(name)
              .arg(maxHP)
              .arg(maxHP / 4)
              .arg(initiative));
}

void TestDataFolder::addMonster(const QString &group, int maxHP, int initiative) const
{
    write(QStringLiteral("Monsters/%1.txt").arg(group.toLower().replace(u' ', u'-')),
          QStringLiteral("group=%1\ntype=Small natural beast\nrole=Skirmisher\nlevel=1\nxp=100\n"
                         "hit-points=%2\ninitiative=%3\nspeed=6\narmour-class=15\nfortitude=13\n"
                         "reflex=14\nwill=12\n")
              .arg(group)
              .arg(maxHP)
              .arg(initiative));
}

void TestDataFolder::load() const
{
    NoProgress progress;
    theCharacters->load(path(), path(), progress);
    theMonsters->load(path(), path(), progress);
    theEncounters->load(path(), path(), progress);
}
