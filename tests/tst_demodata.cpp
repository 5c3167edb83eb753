// What a new user meets first must load without a word and keep to the rules of the game.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSet>

#include "characters.h"
#include "coreobjects.h"
#include "creature.h"
#include "encounters.h"
#include "monsters.h"
#include "paths.h"
#include "preparedencounter.h"
#include "scriptedwindows.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

namespace {

const QString demoData = QStringLiteral(SOURCE_ROOT "/demo-data");

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A role as the files write it: "Soldier", "Minion Soldier", "Elite Soldier", "Solo Soldier".
struct Role {
    QString rank;
    QString name;
};

Role roleOf(const Creature &monster)
{
    const QStringList words = monster.role().split(u' ');
    return words.size() == 2 ? Role {words.first(), words.last()} : Role {{}, words.first()};
}

// Hit points at level 0 but for the constitution score, and those for each level.
struct HitPoints {
    int base;
    int perLevel;
};

const QHash<QString, HitPoints> hitPointsOfRole {{u"Artillery"_s, {6, 6}},
                                                 {u"Brute"_s, {10, 10}},
                                                 {u"Controller"_s, {8, 8}},
                                                 {u"Skirmisher"_s, {8, 8}},
                                                 {u"Soldier"_s, {8, 8}}};

int expectedHP(const Creature &monster)
{
    const Role role = roleOf(monster);
    if (role.rank == u"Minion")
        return 1;
    const HitPoints hitPoints = hitPointsOfRole.value(role.name);
    const int standard =
        hitPoints.base + monster.data().constitution.score + hitPoints.perLevel * monster.level();
    return standard * (role.rank == u"Solo" ? 4 : role.rank == u"Elite" ? 2 : 1);
}

int expectedXP(const Creature &monster)
{
    constexpr int Standard[] = {0, 100, 125, 150, 175, 200, 250, 300, 350};
    const int xp = Standard[monster.level()];
    const QString rank = roleOf(monster).rank;
    if (rank == u"Minion")
        return (xp + 2) / 4;
    return xp * (rank == u"Solo" ? 5 : rank == u"Elite" ? 2 : 1);
}

} // namespace

class DemoDataTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init() { failOnWarnings(); }
    void loadsWithoutComplaint();
    void filesAreSafeToRewrite();
    void creatures_data();
    void creatures();
    void importIsTheHerosOwn();
    void monstersInXmlHavePowers();
    void portraitsAreAllUsedAndDrawnHere();
    void encounters();

private:
    QList<Creature *> allCreatures() const;
    static void checkMonster(const Creature &monster);
    static void checkCharacter(const Creature &character);

    std::unique_ptr<CoreObjects> m_objects;
    ScriptedWindows m_windows;
    QList<LoadResult> m_results;
};

void DemoDataTest::initTestCase()
{
    m_objects = std::make_unique<CoreObjects>();
    dataRoot = demoData;
    NoProgress progress;
    m_results << theCharacters->load(demoData, demoData, progress)
              << theMonsters->load(demoData, demoData, progress)
              << theEncounters->load(demoData, demoData, progress);
}

void DemoDataTest::cleanupTestCase()
{
    m_objects.reset();
    dataRoot = QString();
}

QList<Creature *> DemoDataTest::allCreatures() const
{
    QList<Creature *> creatures;
    for (int i = 0; i < theCharacters->count(); ++i)
        creatures << theCharacters->at(i);
    for (int i = 0; i < theMonsters->count(); ++i)
        creatures << theMonsters->at(i);
    return creatures;
}

void DemoDataTest::loadsWithoutComplaint()
{
    QCOMPARE(m_results, QList<LoadResult>(3, LoadResult::Loaded));
    QCOMPARE(m_windows.shown, QStringList());
    QCOMPARE(theCharacters->count(), 6);
    QCOMPARE(theMonsters->count(), 16);
    QCOMPARE(theEncounters->count(), 4);
}

void DemoDataTest::filesAreSafeToRewrite()
{
    // The program writes CR LF; a file that came without would change as a whole at its first save.
    for (const char *folder : {"Characters", "Monsters", "Encounters"}) {
        const QDir dir(demoData + u'/' + QLatin1String(folder));
        for (const QFileInfo &file : dir.entryInfoList(QDir::Files)) {
            const QByteArray bytes = readFile(file.filePath());
            QVERIFY2(bytes.endsWith("\r\n") && bytes.count('\n') == bytes.count("\r\n")
                         && bytes.count('\r') == bytes.count("\r\n"),
                     qPrintable(file.fileName()));
        }
    }
}

void DemoDataTest::creatures_data()
{
    QTest::addColumn<Creature *>("creature");
    for (Creature *creature : allCreatures())
        QTest::newRow(qPrintable(creature->fileName())) << creature;
}

void DemoDataTest::creatures()
{
    QFETCH(Creature *, creature);
    QVERIFY(!creature->isInvalid());
    QVERIFY(!creature->isMissing());
    QCOMPARE(creature->currHP(), creature->maxHP());
    QVERIFY(!creature->portrait().isNull());
    QCOMPARE(QImage(portraitPath(creature->portraitFile())).size(), QSize(300, 300));
    const CreatureData &data = creature->data();
    for (const Ability &ability : {data.strength, data.dexterity, data.wisdom, data.constitution,
                                   data.intelligence, data.charisma})
        QVERIFY(ability.score >= 1 && ability.score <= 24);
    if (creature->isMonster())
        checkMonster(*creature);
    else
        checkCharacter(*creature);
}

// A rest rereads it, and must not change the hero of a new user.
void DemoDataTest::importIsTheHerosOwn()
{
    Creature *maeve = theCharacters->find(u"Maeve Ashdown"_s);
    QVERIFY(maeve && maeve->isLinked());
    QVERIFY(maeve->refreshFromImport(maeve->importFile()));
    QVERIFY(!maeve->isModified());
    QCOMPARE(maeve->statBlock(), maeve->savedStatBlock());
}

void DemoDataTest::monstersInXmlHavePowers()
{
    for (const QString &group : {u"Slagback"_s, u"Cairn Warden"_s}) {
        const Creature *monster = theMonsters->findGroup(group);
        QVERIFY(monster && monster->fileName().endsWith(u".monster"));
        QCOMPARE(monster->powers().size(), 4);
        for (const Power &power : monster->powers())
            QVERIFY2(!power.details.isEmpty(), qPrintable(power.name));
    }
}

void DemoDataTest::portraitsAreAllUsedAndDrawnHere()
{
    QSet<QString> named;
    for (const Creature *creature : allCreatures())
        named << creature->portraitFile();
    const QStringList shipped = QDir(demoData + u"/Portraits").entryList(QDir::Files);
    QCOMPARE(QSet<QString>(shipped.begin(), shipped.end()), named);
    for (const QString &name : shipped) {
        const QString source = QFileInfo(name).completeBaseName() + u".svg";
        QVERIFY2(QFile::exists(QStringLiteral(SOURCE_ROOT "/images/portraits/") + source),
                 qPrintable(source));
    }
}

void DemoDataTest::checkMonster(const Creature &monster)
{
    QVERIFY(monster.level() >= 1 && monster.level() <= 8);
    QVERIFY(hitPointsOfRole.contains(roleOf(monster).name));
    QCOMPARE(monster.maxHP(), expectedHP(monster));
    QCOMPARE(monster.xp(), expectedXP(monster));
    // Armour class and the other three stay near the level's usual 14 and 12.
    const CreatureData &data = monster.data();
    QVERIFY(qAbs(data.armourClass - data.level - 14) <= 2);
    for (int defence : {data.fortitude, data.reflex, data.will})
        QVERIFY(qAbs(defence - data.level - 12) <= 4);
    const QString rank = roleOf(monster).rank;
    QCOMPARE(monster.initAP(), rank == u"Solo" ? 2 : rank == u"Elite" ? 1 : 0);
}

void DemoDataTest::checkCharacter(const Creature &character)
{
    // An edit of one field writes the file anew from all of them.
    QCOMPARE(character.generateText(), character.statBlock());
    QCOMPARE(character.hsValue(), character.maxHP() / 4);
    QVERIFY(character.maxHS() >= 6 && character.maxHS() <= 12);
    QCOMPARE(character.initAP(), 1);
    QVERIFY(character.initBonus() != NotStated);
}

void DemoDataTest::encounters()
{
    for (int i = 0; i < theEncounters->count(); ++i) {
        const PreparedEncounter &encounter = *theEncounters->at(i);
        QVERIFY(!encounter.adventure().isEmpty());
        QVERIFY(encounter.description().contains(u'\n'));
        QSet<QString> names;
        for (const EncounterMonster &monster : encounter.monsters()) {
            QVERIFY2(theMonsters->findGroup(monster.group), qPrintable(monster.group));
            names << monster.group + u'/' + monster.id;
        }
        QCOMPARE(names.size(), encounter.monsters().size());
        // Level and XP in the file are those worked out from the library, for a party of five.
        QCOMPARE(encounter.image(true), readFile(encounterPath(encounter.fileName())));
    }
}

MORVANE_TEST_MAIN(QGuiApplication, DemoDataTest)
#include "tst_demodata.moc"
