#include <QGuiApplication>

#include "coreobjects.h"
#include "creaturetext.h"
#include "encounters.h"
#include "global.h"
#include "monsters.h"
#include "paths.h"
#include "tables.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class TestEncounterFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void readsLines();
    void worksOutTheLevel();
    void choosesIds();
    void savesUnderNamesOfItsOwn();
    void savesAndRevertsAll();
    void followsRenamedTemplates();
    void changesSingleMonsters();
    void keepsItsTemplatesThroughASwap();
    void bringsClonesIntoPlay();
};

namespace {

// "Rat:A,B;Ogre:1" as monsters.
QList<EncounterMonster> monstersOf(const QString &text)
{
    QList<EncounterMonster> monsters;
    for (const QString &group : text.split(u';', Qt::SkipEmptyParts)) {
        for (const QString &id : group.section(u':', 1).split(u','))
            monsters.append({group.section(u':', 0, 0), id, QString(), false});
    }
    return monsters;
}

// The same, with "=alias" and "!" for hidden behind an ID.
QString described(const PreparedEncounter &encounter)
{
    QStringList groups;
    for (qsizetype i = 0; i < encounter.groupStarts().size(); ++i) {
        const int start = encounter.groupStarts().at(i);
        const int end = encounter.groupStarts().value(i + 1, int(encounter.monsters().size()));
        QStringList ids;
        for (int j = start; j < end; ++j) {
            const EncounterMonster &monster = encounter.monsters().at(j);
            ids.append(monster.id + (monster.alias.isEmpty() ? QString() : u'=' + monster.alias)
                       + (monster.hidden ? u"!"_s : QString()));
        }
        groups.append(encounter.monsters().at(start).group + u':' + ids.join(u','));
    }
    return groups.join(u';');
}

std::unique_ptr<PreparedEncounter> named(const QString &name)
{
    auto encounter = std::make_unique<PreparedEncounter>();
    encounter->setName(name);
    return encounter;
}

} // namespace

void TestEncounterFile::readsLines()
{
    const TestDataFolder folder;
    const auto read = [&folder](const QStringList &row) {
        QFile file(folder.file(u"Encounters/e.txt"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(row[0].toUtf8()) < 0)
            return u"not written"_s;
        file.close();
        PreparedEncounter encounter;
        return encounter.read(u"e.txt"_s, QString()) ? described(encounter) : u"none"_s;
    };
    QCOMPARE(differences(u"encounterlines"_s, 2, read), QString());
}

void TestEncounterFile::worksOutTheLevel()
{
    const auto levelOf = [](const QStringList &row) {
        setPartySize(0);
        const CoreObjects objects;
        auto creature = std::make_unique<Creature>();
        const int xp = row[0].toInt();
        creature->setGroup(u"Rat"_s);
        creature->setField(&CreatureData::xp, xp);
        theMonsters->add(std::move(creature));
        PreparedEncounter encounter;
        encounter.setMonsters(monstersOf(u"RAT:1;Nobody:1"_s));
        const int xpOfOne = encounter.xp();
        setPartySize(row[1].toInt());
        const int level = encounter.level();
        encounter.setMonsters(monstersOf(u"Rat:1,2,3,4,5,6,7,8"_s));
        const qint64 xpOfEight = qMin(qint64(xp) * 8, qint64(std::numeric_limits<int>::max()));
        setPartySize(5);
        return xpOfOne == xp && encounter.xp() == xpOfEight ? QString::number(level) : u"XP"_s;
    };
    QCOMPARE(differences(u"encounterlevels"_s, 3, levelOf), QString());
}

void TestEncounterFile::choosesIds()
{
    const auto choose = [](const QStringList &row) {
        PreparedEncounter encounter;
        encounter.setMonsters(monstersOf(row[0]));
        int scheme = row[3].toInt();
        const QString id = encounter.defaultId(row[1], row[2], scheme, row[4] == u"1");
        return u"%1 %2"_s.arg(id, QString::number(scheme));
    };
    QCOMPARE(differences(u"encounterids"_s, 6, choose), QString());
}

void TestEncounterFile::savesUnderNamesOfItsOwn()
{
    const TestDataFolder folder;
    QStringList names;
    for (const char *name : {"The Old Mill!", "the old mill", "???"}) {
        PreparedEncounter encounter;
        encounter.setName(QLatin1String(name));
        QVERIFY(encounter.write());
        names.append(encounter.fileName());
        PreparedEncounter again;
        QVERIFY(again.read(encounter.fileName(), QString()));
        QCOMPARE(again.name(), name);
    }
    QCOMPARE(names, QStringList({"the-old-mill.txt", "the-old-mill_1.txt", "encounter.txt"}));
    PreparedEncounter encounter;
    QVERIFY(encounter.read(names.at(0), QString()));
    QVERIFY(encounter.remove());
    QVERIFY(!QFile::exists(encounterPath(names.at(0))));
    dataRoot = folder.file(u"nowhere"_s);
    PreparedEncounter unsaved;
    unsaved.setName(u"x"_s);
    QVERIFY(!unsaved.write());
    QCOMPARE(unsaved.fileName(), QString());
}

void TestEncounterFile::savesAndRevertsAll()
{
    const TestDataFolder folder;
    for (const char *name : {"a", "b", "c"})
        folder.write(u"Encounters/%1.txt"_s.arg(QLatin1String(name)),
                     u"name=%1\nadventure=Old\ndescription=\nRat=1\n"_s.arg(QLatin1String(name)));
    const CoreObjects objects;
    folder.load();
    const ChangeCounters &counters = theEncounters->counters();
    const auto names = [] {
        QStringList list;
        for (int i = 0; i < theEncounters->count(); ++i)
            list.append(theEncounters->at(i)->name());
        return list;
    };
    const auto change = [] {
        PreparedEncounter *first = theEncounters->at(0);
        first->setName(u"z"_s);
        first->setAdventure(u"New"_s);
        first->refreshChanged();
        theEncounters->resort(first);
        theEncounters->at(0)->setDeleted(true); // "b"
        theEncounters->addNew(named(theEncounters->newName()));
    };
    change();
    QCOMPARE(names(), QStringList({"b", "c", "New Encounter", "z"}));
    QCOMPARE(theEncounters->adventures(), QStringList({"New", "Old"}));
    QCOMPARE(theEncounters->newName(), "New Encounter 1");
    QCOMPARE(counters.isModified, 2);
    theEncounters->revertAll();
    QCOMPARE(names(), QStringList({"a", "b", "c"}));
    QCOMPARE(theEncounters->adventures(), QStringList({"Old"}));
    QCOMPARE(counters.isNew + counters.isModified + counters.isDeleted, 0);

    change();
    theEncounters->saveAll();
    QCOMPARE(counters.isNew + counters.isModified + counters.isDeleted, 0);
    QCOMPARE(names(), QStringList({"c", "New Encounter", "z"}));
    QVERIFY(!QFile::exists(encounterPath(u"b.txt"_s)));
    QVERIFY(folder.read(u"Encounters/a.txt"_s).startsWith("name=z\r\nadventure=New"));
}

void TestEncounterFile::followsRenamedTemplates()
{
    Encounters encounters;
    for (const char *bytes : {"name=a\r\ndescription=\r\nRat=1\r\nOgre=1\r\n",
                              "name=b\r\ndescription=\r\nOgre=1\r\n"}) {
        auto encounter = std::make_unique<PreparedEncounter>();
        QVERIFY(encounter->parse(bytes));
        encounters.add(std::move(encounter));
    }
    encounters.templateRenamed(u"rat"_s, u"Mouse"_s);
    QCOMPARE(described(*encounters.at(0)), "Mouse:1;Ogre:1");
    QVERIFY(encounters.at(0)->isModified());
    QVERIFY(!encounters.at(1)->isModified());
    QCOMPARE(encounters.counters().isModified, 1);
    encounters.templateDeleted(u"Mouse"_s);
    QCOMPARE(described(*encounters.at(0)), "Mouse:1;Ogre:1");
}

void TestEncounterFile::changesSingleMonsters()
{
    PreparedEncounter encounter;
    const QByteArray bytes = "name=a\r\ndescription=\r\nRat=1,2\r\nhidden#2=true\r\nOgre=1\r\n";
    QVERIFY(encounter.parse(bytes));
    QCOMPARE(encounter.insertMonster({u"RAT"_s, u"3"_s, QString(), false}), 2);
    QCOMPARE(encounter.insertMonster({u"Wolf"_s, u"A"_s, QString(), false}), 4);
    encounter.setMonsterAlias(4, u" Grey, shadow "_s);
    QCOMPARE(described(encounter), "Rat:1,2!,3;Ogre:1;Wolf:A=Grey, shadow");
    QVERIFY(encounter.isModified());
    QCOMPARE(encounter.groupOf(0) * 100 + encounter.groupOf(2) * 10 + encounter.groupOf(4), 2);
    QCOMPARE(encounter.groupOf(3), 1);
    QCOMPARE(encounter.groupOf(5) + encounter.groupOf(-1), -2);

    QVERIFY(encounter.setMonsterId(1, u" b "_s));
    for (const char *id : {"B", "1", " ", "x,y", "x=y"})
        QVERIFY2(!encounter.setMonsterId(2, QLatin1String(id)), id);
    QVERIFY(!encounter.setMonsterId(5, u"9"_s));
    QVERIFY(encounter.setMonsterId(3, u"b"_s));
    QCOMPARE(described(encounter), "Rat:1,b!,3;Ogre:b;Wolf:A=Grey, shadow");
    // What the file gives back is what stands here.
    PreparedEncounter again;
    QVERIFY(again.parse(encounter.image(false)));
    QCOMPARE(described(again), described(encounter));

    encounter.removeMonster(4);
    encounter.removeMonster(7);
    encounter.removeMonster(2);
    QVERIFY(encounter.setMonsterId(1, u"2"_s) && encounter.setMonsterId(2, u"1"_s));
    QCOMPARE(encounter.image(false), bytes);
    QVERIFY(!encounter.isModified());
    encounter.setMonsterHidden(1, false);
    QVERIFY(encounter.isModified());
}

void TestEncounterFile::keepsItsTemplatesThroughASwap()
{
    const TestDataFolder folder;
    for (const char *group : {"Ant", "Bear", "Cat"})
        folder.addMonster(QLatin1String(group));
    folder.write(u"Encounters/e.txt"_s, u"name=e\ndescription=\nAnt=1\nBear=1\nCat=1\n"_s);
    const CoreObjects objects;
    folder.load();
    PreparedEncounter *encounter = theEncounters->at(0);
    const auto rename = [](const QString &from, const QString &to) {
        Creature *creature = theMonsters->findGroup(from);
        creature->setGroup(to);
        creature->setStatBlock(replacedName(creature->statBlock(), from, to));
        theMonsters->resort(creature);
        theEncounters->templateRenamed(from, to);
    };
    rename(u"Ant"_s, u"X"_s);
    rename(u"Bear"_s, u"Ant"_s);
    rename(u"Cat"_s, u"Bear"_s);
    rename(u"X"_s, u"Cat"_s);
    QCOMPARE(described(*encounter), "Cat:1;Ant:1;Bear:1");
    QCOMPARE(theMonsters->changedNames(), QStringList({"Ant", "Bear", "Cat"}));
    theMonsters->revertAll();
    QCOMPARE(described(*encounter), "Ant:1;Bear:1;Cat:1");
    for (int i = 0; i < theMonsters->count(); ++i)
        QCOMPARE(theMonsters->at(i)->fileName(), theMonsters->at(i)->group().toLower() + ".txt");
    QVERIFY(!encounter->isModified());
    QCOMPARE(theMonsters->changedNames(), QStringList());

    // A name that was taken meanwhile goes to the file that a load reads first.
    rename(u"Bear"_s, u"Zebra"_s);
    const QString outside = folder.file(u"import.txt"_s);
    QVERIFY(QFile::copy(folder.file(u"Monsters/bear.txt"_s), outside));
    QCOMPARE(theMonsters->takeFile(outside)->group(), "Bear");
    theMonsters->revertAll();
    QCOMPARE(theMonsters->findGroup(u"Bear"_s)->fileName(), "bear.txt");
    QCOMPARE(theMonsters->findGroup(u"Bear 2"_s)->fileName(), "import.txt");
    QCOMPARE(described(*encounter), "Ant:1;Bear:1;Cat:1");
}

void TestEncounterFile::bringsClonesIntoPlay()
{
    const TestDataFolder folder;
    folder.addMonster(u"Rat"_s);
    const CoreObjects objects;
    folder.load();
    PreparedEncounter encounter;
    QVERIFY(encounter.parse("name=a\ndescription=\nrat=1,2,1\nhidden#2=true\nOgre=1\n"));
    const CreatureList creatures = encounter.creatures();
    QCOMPARE(creatures.names(), "Rat (1), Rat (2), Ogre (1)");
    QVERIFY(creatures.at(2)->isMissing());
    QVERIFY(!creatures.at(1)->isHidden());
    QVERIFY(encounter.creatures() == creatures);
}

MORVANE_TEST_MAIN(QGuiApplication, TestEncounterFile)
#include "tst_encounterfile.moc"
