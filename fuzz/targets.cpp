#include "targets.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPixmapCache>
#include <QTemporaryDir>

#include "characters.h"
#include "coreobjects.h"
#include "creaturefile.h"
#include "creaturekeyform.h"
#include "creaturelist.h"
#include "creatureportrait.h"
#include "creaturetext.h"
#include "encounter.h"
#include "event.h"
#include "history.h"
#include "monsters.h"
#include "monsterxmlhandler.h"
#include "paths.h"
#include "powertext.h"
#include "preparedencounter.h"
#include "statblockhandler.h"
#include "statblockparser.h"
#include "statblockreading.h"
#include "terms.h"
#include "text.h"
#include "tidystatblock.h"
#include "windowinterface.h"

namespace {

// A damaged file makes messages by the thousand.
class SilentWindows : public NoWindows {
public:
    SilentWindows() { setWindows(this); }
    ~SilentWindows() override { setWindows(nullptr); }
    Q_DISABLE_COPY(SilentWindows)

    void showMessage(const QString &, const QString &) override { }
};

void overwrite(const QString &path, QByteArrayView bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes.data(), bytes.size()) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

// A data folder for the whole run: making one for each input would be most of the work.
class FuzzFolder {
public:
    FuzzFolder()
    {
        for (const char *name : {"Characters", "Monsters", "Portraits", "Encounters"})
            QDir(m_dir.path()).mkdir(QString::fromLatin1(name));
        // The history replays only a log that exists; its bytes come from memory.
        overwrite(m_dir.filePath(QStringLiteral("history.log")), {});
        setDefaultTerms();
    }
    QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

// What each input starts with: empty collections, but for one creature of each kind, so that a log
// can name creatures that exist and creatures that don't.
class Fixture {
public:
    Fixture()
    {
        static const FuzzFolder folder;
        dataRoot = folder.path();
        displayRoot = dataRoot;
        theCharacters->add(makeCreature(false, QStringLiteral("Aria")));
        theMonsters->add(makeCreature(true, QStringLiteral("Cave Rat")));
    }

private:
    static std::unique_ptr<Creature> makeCreature(bool isMonster, const QString &name)
    {
        CreatureData data;
        data.isMonster = isMonster;
        data.keyName() = name;
        data.level = 2;
        data.maxHP = 30;
        data.hsValue = 7;
        data.maxHS = 8;
        data.initBonus = 3;
        data.initAP = 1;
        data.powers.append(Power {});
        data.powers.first().name = QStringLiteral("Bite");
        data.powers.first().usageKind = 5;
        auto creature = std::make_unique<Creature>();
        creature->assign(data);
        creature->extendedRest(false);
        creature->syncShadows();
        return creature;
    }

    SilentWindows m_windows;
    CoreObjects m_objects;
};

void readAllTexts()
{
    for (int i = 0; i < theHistory->eventCount(); ++i)
        theHistory->eventText(i);
    for (const Creature *creature : theEncounter->creatures()) {
        creature->statusText();
        creature->conditionsText(true, true, true, false);
        creature->defencesText(true);
        creature->healthText(false);
    }
    theEncounter->playersView();
}

UniqueName uniqueNames(bool isMonster)
{
    return [isMonster](const QString &name, const Creature *self) {
        return isMonster ? theMonsters->uniqueGroup(name, self)
                         : theCharacters->uniqueName(name, self);
    };
}

// What follows on the reading of any creature. True if it is valid.
bool useAsCreature(CreatureData &data, bool isMonster)
{
    const bool valid = validate(data, isMonster, QStringLiteral("file.txt"));
    makeUnique(data, isMonster, uniqueNames(isMonster));
    Creature creature;
    creature.assign(data);
    creature.extendedRest(false);
    creature.generateText();
    creature.defencesText(false);
    creature.displayName();
    for (const Power &power : creature.powers())
        powerHeaderHtml(power, false);
    return valid;
}

bool readKeyFormAs(bool isMonster, const QByteArray &bytes)
{
    CreatureData data;
    data.isMonster = isMonster;
    return readKeyForm(bytes, data, dataRoot) && useAsCreature(data, isMonster);
}

bool readStatBlockAs(bool isMonster, const QString &text)
{
    CreatureData data;
    StatBlockParser::parse(data, text, isMonster, dataRoot);
    return useAsCreature(data, isMonster);
}

} // namespace

bool Fuzz::replayLog(QByteArrayView bytes)
{
    const Fixture fixture;
    theHistory->setDeviceFactory([bytes](const QString &) -> QIODevice * {
        auto *device = new QBuffer;
        device->setData(bytes.data(), int(bytes.size()));
        device->open(QIODevice::ReadWrite);
        return device;
    });
    const bool known = theHistory->load();
    const int count = theHistory->eventCount();
    readAllTexts();
    theHistory->moveTo(-1);
    readAllTexts();
    if (theHistory->position() != -1 || theHistory->eventCount() != count)
        qFatal("the history is not back at its start");
    theHistory->moveTo(count - 1);
    readAllTexts();
    theHistory->moveTo(count / 2);
    return known && count > 0;
}

bool Fuzz::readKeyFormFile(QByteArrayView bytes)
{
    const Fixture fixture;
    const QByteArray text = toLF(bytes.toByteArray());
    const bool isMonster = readKeyFormAs(true, text);
    const bool isCharacter = readKeyFormAs(false, text);
    return isMonster || isCharacter;
}

bool Fuzz::readStatBlockFile(QByteArrayView bytes)
{
    const Fixture fixture;
    const QString text = QString::fromUtf8(toLF(bytes.toByteArray()));
    withoutPortraitInText(withPortraitInText(text, QStringLiteral("a.png")));
    const StatBlockReading reading = readingOf(true, text);
    if (!reading.lines.isEmpty() && reading.lines.size() != text.count(u'\n') + 1)
        qFatal("%lld lines told", static_cast<long long>(reading.lines.size()));
    const bool isMonster = readStatBlockAs(true, text);
    const bool isCharacter = readStatBlockAs(false, text);
    return isMonster || isCharacter;
}

bool Fuzz::tidyCopiedText(QByteArrayView bytes)
{
    const TidiedText once = tidyStatBlock(QString::fromUtf8(bytes));
    const TidiedText twice = tidyStatBlock(once.text);
    if (twice.text != once.text || !twice.changes.isEmpty())
        qFatal("tidied again: %s", qPrintable(twice.changes.join(u'|')));
    return !once.changes.isEmpty();
}

bool Fuzz::readEncounterFile(QByteArrayView bytes)
{
    const Fixture fixture;
    const QString fileName = QStringLiteral("fuzz.txt");
    overwrite(encounterPath(fileName), bytes);
    PreparedEncounter encounter;
    if (!encounter.read(fileName, dataRoot))
        return false;
    encounter.level();
    encounter.image(true);
    encounter.creatures();
    for (int scheme = 0; scheme <= PreparedEncounter::LetterAndNumber; ++scheme) {
        for (const int start : encounter.groupStarts()) {
            int chosen = scheme;
            encounter.defaultId(encounter.monsters().at(start).group, QString(), chosen, true);
        }
    }
    return true;
}

bool Fuzz::showPortrait(QByteArrayView bytes)
{
    const Fixture fixture;
    const QString name = QStringLiteral("fuzzed");
    overwrite(portraitPath(name), bytes);
    Creature creature;
    creature.setPortrait(name);
    adoptPortrait(portraitPath(name), dataRoot, PortraitCopy::Forbidden);
    const bool shows = !creature.portrait().isNull();
    QPixmapCache::clear();
    QFile::remove(portraitPath(name));
    return shows;
}

bool Fuzz::loadCreatureFile(QByteArrayView bytes)
{
    const Fixture fixture;
    static const bool hasPortraits = [] {
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::red);
        return QDir().mkpath(portraitPath(QStringLiteral("heroes/old")))
            && picture.save(portraitPath(QStringLiteral("heroes/old/a.png")))
            && picture.save(portraitPath(QStringLiteral("b.png")));
    }();
    if (!hasPortraits)
        qFatal("no portraits");
    bool isValid = false;
    const QString name = QStringLiteral("fuzzed.txt");
    for (const bool isMonster : {true, false}) {
        overwrite(creaturePath(name, isMonster), bytes);
        Creature creature;
        if (!creature.load(name, isMonster, dataRoot, uniqueNames(isMonster)))
            continue;
        creature.portrait();
        creature.setPortrait(QStringLiteral("lost\\b.png"));
        creature.save();
        isValid = isValid || !creature.isInvalid();
    }
    return isValid;
}

bool Fuzz::readMonsterXml(QByteArrayView bytes)
{
    const Fixture fixture;
    CreatureData data;
    MonsterXmlHandler::parse(toLF(bytes.toByteArray()), data, dataRoot);
    withoutPortraitInText(withPortraitInText(data.statBlock, QStringLiteral("a.png")));
    return useAsCreature(data, true);
}

bool Fuzz::readCharacterXml(QByteArrayView bytes)
{
    const Fixture fixture;
    CreatureData data;
    data.isMonster = false;
    return StatBlockHandler::parse(toLF(bytes.toByteArray()), data, dataRoot,
                                   PortraitCopy::Forbidden)
        && useAsCreature(data, false);
}
