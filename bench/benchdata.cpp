#include "benchdata.h"

#include <QDir>
#include <QFile>

#include "characters.h"
#include "creaturelist.h"
#include "encounter.h"
#include "encounters.h"
#include "history.h"
#include "monsters.h"
#include "paths.h"
#include "progress.h"
#include "rosterevents.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

class NoProgress : public Progress {
public:
    void setLabel(const QString &) override { }
    void step() override { }
    bool wasCancelled() const override { return false; }
};

QByteArray characterText(int number)
{
    return QByteArrayLiteral("name=Hero ") + QByteArray::number(number)
        + QByteArrayLiteral("\r\nclass=Fighter\r\nrace=Human\r\nrole=Defender\r\nlevel=5\r\n"
                            "hit-points=60\r\nhs-value=15\r\nhs-resources=9\r\ninitiative=3\r\n"
                            "speed=6\r\nap-resources=1\r\narmour-class=21\r\nfortitude=18\r\n"
                            "reflex=15\r\nwill=16\r\nperception=14\r\ninsight=13\r\n"
                            "languages=Common\r\n");
}

QByteArray monsterText(int number)
{
    return QByteArrayLiteral("group=Foe ") + QByteArray::number(number)
        + QByteArrayLiteral("\r\ntype=Medium natural humanoid (goblin)\r\nrole=Skirmisher\r\n"
                            "level=4\r\nxp=175\r\nhit-points=55\r\ninitiative=6\r\nspeed=6\r\n"
                            "vision=low-light vision\r\nperception=4\r\narmour-class=18\r\n"
                            "fortitude=15\r\nreflex=17\r\nwill=14\r\nstr=14\r\ndex=17\r\nwis=11\r\n"
                            "con=13\r\ncha=10\r\nalignment=Evil\r\nlanguages=Common, Goblin\r\n");
}

QByteArray encounterText(int number)
{
    const QByteArray n = QByteArray::number(number);
    return QByteArrayLiteral("name=Ambush ") + n
        + QByteArrayLiteral("\r\nadventure=The Long Road\r\ndescription=At the ford\\nby night\r\n"
                            "level=4\r\nxp=1400\r\nFoe ")
        + n + QByteArrayLiteral("=1,2,3,4\r\nalias#2=A shadow\r\nhidden#3=true\r\n");
}

CreatureList party()
{
    CreatureList list;
    for (int i = 0; i < 4; ++i)
        list.insertAt(i, theCharacters->at(i));
    return list;
}

CreatureList foes(int count)
{
    CreatureList list;
    for (int i = 0; i < count; ++i) {
        QString group = theMonsters->at(i % theMonsters->count())->group();
        list.insertAt(i, theMonsters->ensureTemplate(group, QString::number(i + 1), true));
    }
    return list;
}

QList<CreatureInit> rolls(const CreatureList &creatures)
{
    QList<CreatureInit> result;
    for (const Creature *creature : creatures)
        result.append({creature->displayName(), 20 - int(result.size()), int(result.size())});
    return result;
}

} // namespace

BenchFolder::BenchFolder(int monsters)
{
    for (const char *name : {"Characters", "Monsters", "Portraits", "Encounters"})
        QDir(m_dir.path()).mkdir(QString::fromLatin1(name));
    for (int i = 0; i < monsters; ++i)
        write(QStringLiteral("Monsters/foe-%1.txt").arg(i), monsterText(i));
    for (int i = 0; i < qMax(4, monsters / 25); ++i)
        write(QStringLiteral("Characters/hero-%1.txt").arg(i), characterText(i));
    for (int i = 0; i < qMax(1, monsters / 10); ++i)
        write(QStringLiteral("Encounters/ambush-%1.txt").arg(i), encounterText(i));
    dataRoot = m_dir.path();
    displayRoot = dataRoot;
}

BenchFolder::~BenchFolder()
{
    dataRoot = QString();
    displayRoot = QString();
}

void BenchFolder::write(const QString &relative, const QByteArray &text)
{
    const QString path = m_dir.filePath(relative);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", qPrintable(path));
    m_files << path;
}

void BenchFolder::load() const
{
    NoProgress progress;
    theCharacters->load(path(), path(), progress);
    theMonsters->load(path(), path(), progress);
    theEncounters->load(path(), path(), progress);
}

Fight::Fight(const BenchFolder &folder)
{
    folder.load();
}

void startFight(int monsters)
{
    ObjectStream *stream = theHistory->getStream();
    theHistory->doEvent(new SetPartyEvent(party(), false, {}, stream), true);
    theHistory->doEvent(new SetEncounterEvent({}, foes(monsters), false, stream), true);
    theHistory->doEvent(new StartEncounterEvent(rolls(theEncounter->characters()),
                                                rolls(theEncounter->monsters()), stream),
                        true);
}

Creature *Fight::target(int offset) const
{
    return theEncounter->at((m_played + offset) % theEncounter->count());
}

void Fight::playOne()
{
    ObjectStream *stream = theHistory->getStream();
    switch (m_played++ % 4) {
    case 0:
        theHistory->doEvent(new DamageEvent(theEncounter->current(), target(0), 7, stream), true);
        break;
    case 1:
        theHistory->doEvent(new HealEvent(theEncounter->current(), target(-1), 0, 7, stream), true);
        break;
    case 2:
        theHistory->doEvent(new ShowHideEvent(target(0), !target(0)->isHidden(), stream), true);
        break;
    default:
        theHistory->doEvent(new NextTurnEvent(stream, false), true);
    }
}

void Fight::play(int events)
{
    start();
    while (theHistory->eventCount() < events)
        playOne();
}
