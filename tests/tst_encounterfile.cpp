#include <QGuiApplication>

#include <array>

#include "coreobjects.h"
#include "encounters.h"
#include "monsters.h"
#include "paths.h"
#include "scriptedwindows.h"
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
    struct Case {
        QByteArray bytes;
        bool read;
        QString monsters;
    };
    const Case cases[] = {
        // A group ahead of the description is none; marks apply to the group just above.
        {"name=a\nRat=1\ndescription=\nOgre=1\n", true, "Ogre:1"},
        {"name=a\ndescription=\nRat=1,2\nOgre=1\nhidden#1=true\nalias#2=x\n", true,
         "Rat:1,2;Ogre:1!"},
        {"name=a\ndescription=\nRat=1,2\nhidden#1=yes\nhidden#2=true", true, "Rat:1,2!"},
        {"name=a\ndescription=\nRat= 1 ,, 2,\nOgre=\n", true, "Rat:1,2"},
        {"#x\n \t\n\r\nname=a\n\ndescription=\r\n \nRat=1", true, "Rat:1"},
        {"name=a\rdescription=\n\rRat=1,2\r\rhidden#2=true\r\n", true, "Rat:1,2!"},
        {"\xEF\xBB\xBFname=a\ndescription=\nRat=1", true, "Rat:1"},
        // A bad line, a key too long and an empty name end it.
        {"name=a\ndescription=\nRat=1\n=5\nOgre=1\n", true, "Rat:1"},
        {"name=a\ndescription=\nRat=1\n" + QByteArray(401, 'k') + "=1\nOgre=1\n", true, "Rat:1"},
        {"description=\nRat=1\nname=\nOgre=1\n", false, "Rat:1"},
        {"description=\nRat=1\n", false, "Rat:1"},
        {"name=a\nlevel=x\nxp=99999999999\ndescription=", true, ""}};
    const TestDataFolder folder;
    for (const auto &[bytes, read, monsters] : cases) {
        QFile file(folder.file(u"Encounters/e.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        PreparedEncounter encounter;
        QVERIFY2(encounter.read(u"e.txt"_s, QString()) == read, bytes.constData());
        QCOMPARE(described(encounter), monsters);
        QVERIFY(!encounter.read(u"none.txt"_s, QString()));
    }
}

void TestEncounterFile::worksOutTheLevel()
{
    const std::array<int, 3> cases[] = {{0, 5, 1},
                                        {-500, 5, 1},
                                        {500, 5, 1},
                                        {624, 5, 1},
                                        {625, 5, 2},
                                        {625, 1, 11},
                                        {111000 * 4 - 1, 4, 39},
                                        {111000 * 4, 4, 40},
                                        {2000000000, 12, 40}};
    for (const auto &[xp, party, level] : cases) {
        ScriptedWindows windows;
        windows.party = 0;
        const CoreObjects objects;
        auto creature = std::make_unique<Creature>();
        creature->setGroup(u"Rat"_s);
        creature->setField(&CreatureData::xp, xp);
        theMonsters->add(std::move(creature));
        PreparedEncounter encounter;
        encounter.setMonsters(monstersOf(u"RAT:1;Nobody:1"_s));
        QCOMPARE(encounter.xp(), xp);
        windows.party = party;
        QCOMPARE(encounter.level(), level);
        encounter.setMonsters(monstersOf(u"Rat:1,2,3,4,5,6,7,8"_s));
        QCOMPARE(encounter.xp(),
                 int(qMin(qint64(xp) * 8, qint64(std::numeric_limits<int>::max()))));
    }
}

void TestEncounterFile::choosesIds()
{
    struct Case {
        const char *present, *group, *prefix;
        int scheme;
        bool perEncounter;
        const char *id;
        int newScheme;
    };
    const Case cases[] = {{"", "Rat", "", 0, false, "1", 0},
                          {"", "Rat", "", 1, false, "A", 1},
                          {"", "rat", "", 2, false, "R1", 2},
                          {"", "Cave rat", "", 2, false, "R1", 2}, // letter of the second word
                          {"Wolf:R1", "Cave rat", "", 2, false, "Cr1", 2}, // initials
                          {"Wolf:R1,S4;Bear:R", "Rat", "", 2, false, "T1", 2},
                          {"", "Rat", "Rx", 0, false, "Rx", 2},
                          {"Rat:Rx", "Rat", "Rx", 2, false, "Rx2", 2},
                          {"Wolf:Rx3", "Rat", "Rx", 0, false, "R", 2},
                          {"Rat:1,2", "Rat", "", 1, false, "3", 0},
                          {"rat:R7", "Rat", "", 0, false, "R8", 2},
                          {"Rat:B", "Rat", "", 2, false, "B2", 2}, // a letter becomes the base
                          {"Rat:A,B", "Rat", "", 2, false, "C", 1},
                          {"Rat:Z", "Rat", "", 1, false, "a", 1},
                          {"Rat:z", "Rat", "", 1, false, "0", 1},
                          {"Rat:x,Boss", "Rat", "", 0, false, "A", 1}, // a word starts anew
                          {"Rat:3,4,2", "Rat", "", 0, false, "5", 0},
                          {"Wolf:1,2", "Rat", "", 0, true, "3", 0},
                          {"Wolf:1,2", "Rat", "", 0, false, "1", 0},
                          {"Rat:99999999999999999999", "Rat", "", 0, false, "1", 0},
                          {"Rat:2147483647", "Rat", "", 0, false, "2147483648", 0},
                          {"", " ", "", 2, false, "A1", 2}};
    for (const Case &each : cases) {
        PreparedEncounter encounter;
        encounter.setMonsters(monstersOf(QLatin1String(each.present)));
        int scheme = each.scheme;
        QCOMPARE(encounter.defaultId(QLatin1String(each.group), QLatin1String(each.prefix), scheme,
                                     each.perEncounter),
                 QLatin1String(each.id));
        QCOMPARE(scheme, each.newScheme);
    }
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
        theEncounters->resort(0);
        theEncounters->at(0)->setDeleted(true); // "b"
        PreparedEncounter *added =
            theEncounters->at(theEncounters->add(named(theEncounters->newName())));
        added->setNew(true);
        added->setModified(true);
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
