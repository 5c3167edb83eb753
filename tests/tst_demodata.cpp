// What a new user meets first must load without a word and keep to the rules of the game.
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

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

// A role as the files write it: "Soldier", "Minion Soldier", "Elite Soldier (Leader)", "Solo
// Soldier".
struct Role {
    QString rank;
    QString name;
};

Role roleOf(const Creature &monster)
{
    const QStringList words = QString(monster.role()).remove(u" (Leader)"_s).split(u' ');
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

// Every "+6 vs. AC" of a text is five above the level; against the other defences it's three.
void checkAttacks(const QString &text, int level)
{
    static const QRegularExpression attack(u"\\+(\\d+) vs\\. (\\w+)"_s);
    for (const QRegularExpressionMatch &match : attack.globalMatch(text))
        QVERIFY2(match.captured(1).toInt() == level + (match.captured(2) == u"AC" ? 5 : 3),
                 qPrintable(text));
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
    void layouts_data();
    void layouts();
    void portraitsAreAllUsedAndDrawnHere();
    void encounters();

private:
    QList<Creature *> allCreatures() const;
    static void checkMonster(const Creature &monster);
    static void checkPowers(const Creature &monster);
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
    QCOMPARE(theMonsters->count(), 19);
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
    if (creature->isMonster())
        checkPowers(*creature);
    else
        checkCharacter(*creature);
    if (creature->data().disabled)
        return;
    const CreatureData &data = creature->data();
    for (const Ability &ability : {data.strength, data.dexterity, data.wisdom, data.constitution,
                                   data.intelligence, data.charisma})
        QVERIFY(ability.score >= 1 && ability.score <= 24);
    if (creature->isMonster())
        checkMonster(*creature);
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

// A monster for each way in which a dungeon master comes by a stat block.
void DemoDataTest::layouts_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("monsters");
    QTest::newRow("old style") << u"^m .+\\(standard; at-will\\)( ✦ .+)?$"_s << 5;
    QTest::newRow("bullets as letters") << u"^m .+\\) F "_s << 1;
    QTest::newRow("new style") << u"^Standard Actions\n(. )?[A-Z].+ • At-Will\nAttack: "_s << 3;
    QTest::newRow("new style, other bullets") << u"^m .+ [✦*] At-Will\nAttack: "_s << 2;
    QTest::newRow("dotted") << u"^Level .+ • XP "_s << 3;
    QTest::newRow("wrapped lines") << u"^m .+\\(standard;$"_s << 1;
    QTest::newRow("minion") << u"Level \\d Minion "_s << 3;
    QTest::newRow("elite leader") << u"^Level \\d Elite .+\\(Leader\\)$"_s << 1;
    QTest::newRow("solo") << u"Level \\d Solo "_s << 1;
    QTest::newRow("trap") << u"^Trap: "_s << 1;
    QTest::newRow("hazard") << u"^Hazard: "_s << 1;
    QTest::newRow("XML") << u"^<Monster "_s << 2;
}

void DemoDataTest::layouts()
{
    QFETCH(QString, pattern);
    QFETCH(int, monsters);
    const QRegularExpression layout(pattern, QRegularExpression::MultilineOption);
    int found = 0;
    for (int i = 0; i < theMonsters->count(); ++i)
        found += theMonsters->at(i)->statBlock().contains(layout);
    QCOMPARE(found, monsters);
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

void DemoDataTest::checkPowers(const Creature &monster)
{
    constexpr int TextIcon = 14;
    constexpr int FirstAction = 5;
    const bool isTrap = monster.data().disabled;
    const QList<Power> powers = monster.powers();
    QVERIFY(powers.size() >= 3);
    QVERIFY(std::ranges::is_sorted(powers, {}, &Power::section));
    // Icons 3, 5, 7 and 9 are those of the basic attacks, usages from 4 on recharge.
    QVERIFY(std::ranges::any_of(
        powers, [](const Power &p) { return p.icon % 2 == 1 && p.icon >= 3 && p.icon <= 9; }));
    QCOMPARE(std::ranges::any_of(powers, [](const Power &p) { return p.usageKind >= 4; }),
             !isTrap && roleOf(monster).rank != u"Minion");
    // A trap opens with a text that no panel shows, and with a warning that they show.
    constexpr int WarningSection = 2;
    QCOMPARE(monster.data().unplacedText.isEmpty(), !isTrap);
    QCOMPARE(powers.first().section == WarningSection, isTrap);
    static const QRegularExpression leftover(u"[•✦*](?! <b>)|\\bF\\b"_s);
    for (const Power &power : powers) {
        QVERIFY(!power.details.isEmpty());
        checkAttacks(power.details.join(u'\n'), monster.level());
        if (isTrap)
            continue;
        QVERIFY(!power.name.isEmpty() && power.icon != TextIcon);
        QVERIFY2(power.section < FirstAction || power.usageKind > 0, qPrintable(power.name));
        const QStringList texts = power.details + QStringList {power.name, power.keywords};
        QVERIFY2(texts.filter(leftover).isEmpty(), qPrintable(power.name));
    }
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
