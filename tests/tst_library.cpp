#include <QElapsedTimer>
#include <QGuiApplication>
#include <QSignalSpy>

#include "characters.h"
#include "coreobjects.h"
#include "encounters.h"
#include "monsters.h"
#include "paths.h"
#include "scriptedwindows.h"
#include "testdata.h"
#include "testhome.h"

using FolderAnswer = WindowInterface::FolderAnswer;

class TestLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void sortsAndFinds();
    void numbersEqualNames();
    void findsRenamedCreatures();
    void insertsPassingOverAnEntry();
    void newNamesPassOverTakenOnes();
    void newCreaturesAreValid();
    void makesClonesAndStandIns();
    void lookUpWithoutCreating();
    void keepsWhatTheFightNames();
    void savesAllMonsters();
    void revertsAllMonsters();
    void savesAndRevertsCharacters();
    void takesOverAnotherCollection();
    void asksAboutTheFolder_data();
    void asksAboutTheFolder();
    void stopsWhereTheUserCancels();
    void costDoesNotGrowWithTheLibrary();
};

namespace {

// Counts steps, and cancels after some of them.
class CountingProgress : public Progress {
public:
    explicit CountingProgress(int cancelAfter = -1) : m_cancelAfter(cancelAfter) { }
    void setLabel(const QString &text) override { label = text; }
    void step() override { ++steps; }
    bool wasCancelled() const override { return steps == m_cancelAfter; }

    QString label;
    int steps = 0;

private:
    int m_cancelAfter;
};

template <typename Collection>
QStringList keysOf(const Collection &collection)
{
    QStringList keys;
    for (int i = 0; i < collection.count(); ++i)
        keys.append(collection.at(i)->keyName());
    return keys;
}

void addFlagged(Monsters &monsters, std::unique_ptr<Creature> creature)
{
    Creature *added = monsters.at(monsters.add(std::move(creature)));
    added->setNew(true);
    added->setModified(true);
}

} // namespace

void TestLibrary::sortsAndFinds()
{
    const TestDataFolder folder;
    for (const char *group : {"Wolf", "bear", "Ant", "ape"})
        folder.addMonster(QLatin1String(group));
    folder.write(QStringLiteral("Monsters/template.txt"), QStringLiteral("group=x"));
    folder.write(QStringLiteral("Monsters/odd.txt"), QStringLiteral("no stat block"));
    Monsters monsters;
    CountingProgress progress;
    QCOMPARE(monsters.load(folder.path(), folder.path(), progress), LoadResult::Loaded);
    QCOMPARE(keysOf(monsters), QStringList({"Ant", "ape", "bear", "odd.txt", "Wolf"}));
    QCOMPARE(progress.label, "Loading monsters...");
    // With "." and "..", which the count of files includes as well.
    QCOMPARE(progress.steps, 8);
    QCOMPARE(Monsters::fileCount(folder.path()), 8);
    QCOMPARE(Monsters::fileCount(folder.file(QStringLiteral("nowhere"))), 0);

    QCOMPARE(monsters.findGroup(QStringLiteral("WOLF")), monsters.at(4));
    QCOMPARE(monsters.findGroup(QStringLiteral("Wol")), nullptr);
    QCOMPARE(monsters.findFile(QStringLiteral("BEAR.txt")), monsters.at(2));
    monsters.at(2)->setDeleted(true);
    QCOMPARE(monsters.findFile(QStringLiteral("bear.txt")), nullptr);
    QCOMPARE(monsters.findGroup(QStringLiteral("bear")), monsters.at(2));
    QCOMPARE(monsters.at(5), nullptr);
    QCOMPARE(monsters.at(-1), nullptr);
    QCOMPARE(monsters.indexOf(monsters.at(3)), 3);
}

void TestLibrary::numbersEqualNames()
{
    const TestDataFolder folder;
    for (const char *file : {"a", "b", "c"}) {
        folder.write(QStringLiteral("Characters/%1.txt").arg(QLatin1String(file)),
                     QStringLiteral("name=%1\nlevel=1\nclass=Bard\nrace=Elf\n")
                         .arg(*file == 'b' ? QStringLiteral("ARIA") : QStringLiteral("Aria")));
    }
    Characters characters;
    NoProgress progress;
    characters.load(folder.path(), folder.path(), progress);
    QCOMPARE(keysOf(characters), QStringList({"Aria", "ARIA 2", "Aria 3"}));
    // The file keeps the name that the user gave it.
    QVERIFY(folder.read(QStringLiteral("Characters/b.txt")).startsWith("name=ARIA\r\n"));
    Creature *first = characters.at(0);
    QCOMPARE(characters.uniqueName(QStringLiteral("aria"), first), "aria");
    QCOMPARE(characters.uniqueName(QStringLiteral("aria")), "aria 4");
    QCOMPARE(characters.find(QStringLiteral("aria"), first), nullptr);
    // A number that is given up can be had again.
    characters.remove(1, false);
    QCOMPARE(characters.uniqueName(QStringLiteral("aria")), "aria 2");
}

void TestLibrary::findsRenamedCreatures()
{
    const TestDataFolder folder;
    folder.addCharacter(QStringLiteral("Aria"));
    folder.addCharacter(QStringLiteral("Borin"));
    folder.addMonster(QStringLiteral("Rat"));
    const CoreObjects objects;
    folder.load();
    Creature *aria = theCharacters->at(0);
    aria->rename(QStringLiteral("Zoe"));
    QCOMPARE(theCharacters->find(QStringLiteral("zoe")), aria);
    QCOMPARE(theCharacters->find(QStringLiteral("Aria")), nullptr);
    Creature *rat = findCreature(QStringLiteral("Rat (1)"), true);
    rat->setName(QStringLiteral("Chief"));
    QCOMPARE(findCreature(QStringLiteral("rat (chief)"), false), rat);
    QVERIFY(findCreature(QStringLiteral("Rat (1)"), true) != rat);
    theMonsters->retireClone(rat);
    QCOMPARE(findCreature(QStringLiteral("Rat (Chief)"), false), nullptr);
    QCOMPARE(rat->name(), "Chief");
}

void TestLibrary::insertsPassingOverAnEntry()
{
    Monsters monsters;
    for (const char *group : {"Ant", "bear", "Bear", "Wolf"}) {
        auto creature = std::make_unique<Creature>();
        creature->setGroup(QLatin1String(group));
        monsters.add(std::move(creature));
    }
    QCOMPARE(monsters.insertionIndex(QStringLiteral("BEAR")), 3);
    QCOMPARE(monsters.insertionIndex(QStringLiteral("aaa")), 0);
    QCOMPARE(monsters.insertionIndex(QStringLiteral("zzz")), 4);
    // The first entry is about to be renamed.
    QCOMPARE(monsters.insertionIndex(QStringLiteral("Ant"), 0), 1);
    QCOMPARE(monsters.insertionIndex(QStringLiteral("Wolf"), 3), 4);
    QCOMPARE(monsters.insertionIndex(QStringLiteral("Cat"), 3), 4);
    QCOMPARE(monsters.insertionIndex(QStringLiteral("Bear"), 1), 3);
}

void TestLibrary::newNamesPassOverTakenOnes()
{
    Monsters monsters;
    QCOMPARE(monsters.newName(), "New Monster");
    addFlagged(monsters, monsters.newMonster());
    QCOMPARE(monsters.newName(), "New Monster 1");
    // A deletion that isn't saved keeps the name taken.
    monsters.at(0)->setDeleted(true);
    QCOMPARE(monsters.newName(), "New Monster 1");
    Characters characters;
    characters.add(characters.newCharacter());
    QCOMPARE(characters.newName(), "New Character 1");
    characters.at(0)->setDeleted(true);
    characters.remove(0, true);
    QCOMPARE(characters.newName(), "New Character 1");
}

void TestLibrary::newCreaturesAreValid()
{
    const Monsters monsters;
    const std::unique_ptr<Creature> monster = monsters.newMonster();
    QCOMPARE(monster->level(), 1);
    QCOMPARE(monster->xp(), 100);
    QVERIFY(monster->statBlock().startsWith(
        QStringLiteral("New Monster\nMedium monster\nLevel 1 Soldier XP 100\n")));
    const Characters characters;
    const std::unique_ptr<Creature> character = characters.newCharacter();
    QCOMPARE(character->level(), 1);
    QCOMPARE(character->currAP(), 1);
    QVERIFY(character->shadowVitality() == character->liveVitality());
    QVERIFY(character->statBlock().contains(QStringLiteral("\nlevel=1\n")));
}

void TestLibrary::makesClonesAndStandIns()
{
    const TestDataFolder folder;
    folder.addMonster(QStringLiteral("Cave Rat"), 20, 3);
    folder.addCharacter(QStringLiteral("Aria"));
    const CoreObjects objects;
    folder.load();

    QString group = QStringLiteral("cave RAT");
    Creature *clone = theMonsters->ensureTemplate(group, QStringLiteral("A"), true);
    QCOMPARE(group, "Cave Rat");
    QVERIFY(clone != theMonsters->at(0));
    QCOMPARE(clone->displayName(), "Cave Rat (A)");
    QCOMPARE(clone->nameBefore(), "A");
    QCOMPARE(clone->currHP(), 20);
    QCOMPARE(clone->apUsedInEncounter(), 0);
    QVERIFY(clone->shadowVitality() == clone->liveVitality());
    QCOMPARE(findCreature(QStringLiteral("Cave Rat (a)"), true), clone);
    QCOMPARE(theMonsters->clones(), QList<Creature *>({clone}));

    Creature *ghost = findCreature(QStringLiteral("Gone (1)"), true);
    QVERIFY(ghost->isMissing());
    QVERIFY(findCreature(QStringLiteral("gone (2)"), true)->isMissing());
    QCOMPARE(keysOf(*theMonsters), QStringList({"Cave Rat", "Gone"}));

    QCOMPARE(findCreature(QStringLiteral("aria"), true), theCharacters->at(0));
    Creature *hero = findCreature(QStringLiteral("Nobody"), true);
    QVERIFY(hero->isMissing() && !hero->isMonster());
    QCOMPARE(hero->apUsedInEncounter(), 0);
    QCOMPARE(findCreature(QStringLiteral("nobody"), true), hero);
    QCOMPARE(theCharacters->count(), 1);
    QCOMPARE(theCharacters->all(), QList<Creature *>({theCharacters->at(0), hero}));
    QCOMPARE(findCreature(QString(), true), nullptr);

    // Neither counts as new or changed, whatever the fight does to them, and no save writes them.
    for (Creature *creature : {clone, ghost, hero}) {
        CreatureVitality vitality = creature->liveVitality();
        vitality.maxHP += 5;
        creature->setVitality(vitality);
    }
    QCOMPARE(theMonsters->counters().isNew + theCharacters->counters().isNew, 0);
    QCOMPARE(theMonsters->counters().isModified + theCharacters->counters().isModified, 0);
    theMonsters->saveAll();
    theCharacters->saveAll();
    QCOMPARE(Monsters::fileCount(folder.path()), 3);
    QCOMPARE(Characters::fileCount(folder.path()), 3);
}

void TestLibrary::lookUpWithoutCreating()
{
    const TestDataFolder folder;
    folder.addMonster(QStringLiteral("Rat"));
    const CoreObjects objects;
    folder.load();
    for (const char *name : {"Rat (1)", "Gone (1)", "Nobody", "x (", " ()", ""})
        QCOMPARE(findCreature(QLatin1String(name), false), nullptr);
    QCOMPARE(theMonsters->count(), 1);
    QVERIFY(theMonsters->clones().isEmpty());
    QVERIFY(theCharacters->all().isEmpty());
    // Odd names make creatures that the same name finds again.
    for (const char *name : {"Rat (a (b))", "x (", " ()", "Rat (1"}) {
        Creature *creature = findCreature(QLatin1String(name), true);
        QVERIFY(creature);
        QCOMPARE(findCreature(QLatin1String(name), false), creature);
    }
}

void TestLibrary::keepsWhatTheFightNames()
{
    const TestDataFolder folder;
    folder.addCharacter(QStringLiteral("Aria"));
    folder.addCharacter(QStringLiteral("Borin"));
    folder.addMonster(QStringLiteral("Rat"));
    const CoreObjects objects;
    folder.load();
    Creature *aria = theCharacters->at(0);
    aria->setDeleted(true);
    theCharacters->remove(0, true);
    theCharacters->saveAll();
    QCOMPARE(theCharacters->count(), 1);
    QCOMPARE(findCreature(QStringLiteral("Aria"), true), aria);

    Creature *rat = findCreature(QStringLiteral("Rat (1)"), true);
    theMonsters->at(0)->setDeleted(true);
    theMonsters->saveAll();
    QCOMPARE(theMonsters->count(), 0);
    QCOMPARE(findCreature(QStringLiteral("Rat (1)"), false), rat);

    Creature *borin = theCharacters->at(0);
    borin->takeDamage(5, rat);
    theCharacters->resetForEncounter();
    theMonsters->resetForEncounter();
    QCOMPARE(borin->currHP(), 30);
    QVERIFY(borin->shadowVitality() == borin->liveVitality());
    QVERIFY(findCreature(QStringLiteral("Aria"), true)->isMissing());
    QCOMPARE(findCreature(QStringLiteral("Rat (1)"), false), nullptr);
}

void TestLibrary::savesAllMonsters()
{
    const TestDataFolder folder;
    for (const char *group : {"Ant", "Bear", "Cat"})
        folder.addMonster(QLatin1String(group));
    const CoreObjects objects;
    folder.load();
    const ChangeCounters &counters = theMonsters->counters();
    theMonsters->at(0)->setStatBlock(theMonsters->at(0)->statBlock() + QStringLiteral("xp=175\n"));
    theMonsters->at(1)->setDeleted(true);
    addFlagged(*theMonsters, theMonsters->newMonster());
    QCOMPARE(counters.isNew, 1);
    QCOMPARE(counters.isModified, 2);
    QCOMPARE(counters.isDeleted, 1);

    const QString root = std::exchange(dataRoot, folder.file(QStringLiteral("nowhere")));
    theMonsters->at(1)->setDeleted(false);
    theMonsters->saveAll();
    QCOMPARE(counters.isNew, 1);
    QCOMPARE(counters.isModified, 2);

    dataRoot = root;
    theMonsters->at(1)->setDeleted(true);
    theMonsters->saveAll();
    QCOMPARE(counters.isNew + counters.isModified + counters.isDeleted, 0);
    QCOMPARE(keysOf(*theMonsters), QStringList({"Ant", "Cat", "New Monster"}));
    QVERIFY(folder.read(QStringLiteral("Monsters/ant.txt")).endsWith("xp=175\r\n"));
    QVERIFY(!QFile::exists(folder.file(QStringLiteral("Monsters/bear.txt"))));
    QVERIFY(folder.read(QStringLiteral("Monsters/new-monster.txt")).startsWith("New Monster\r\n"));
}

void TestLibrary::revertsAllMonsters()
{
    const TestDataFolder folder;
    for (const char *group : {"Ant", "Bear", "Cat"})
        folder.addMonster(QLatin1String(group));
    folder.write(QStringLiteral("Encounters/e.txt"),
                 QStringLiteral("name=E\ndescription=\nAnt=1,2\n"));
    const CoreObjects objects;
    folder.load();
    Creature *ant = theMonsters->at(0);
    CreatureData data = ant->data();
    data.group = QStringLiteral("Zebra");
    data.statBlock.replace(QStringLiteral("Ant"), data.group);
    ant->assign(data);
    ant->statBlockChanged();
    theEncounters->templateRenamed(QStringLiteral("Ant"), QStringLiteral("Zebra"));
    QVERIFY(theEncounters->at(0)->isModified());
    theMonsters->at(1)->setDeleted(true);
    addFlagged(*theMonsters, theMonsters->newMonster());

    theMonsters->revertAll();
    QCOMPARE(keysOf(*theMonsters), QStringList({"Ant", "Bear", "Cat"}));
    QCOMPARE(theMonsters->at(0), ant);
    const ChangeCounters &counters = theMonsters->counters();
    QCOMPARE(counters.isNew + counters.isModified + counters.isDeleted, 0);
    QCOMPARE(theEncounters->at(0)->monsters().at(0).group, "Ant");
    QVERIFY(!theEncounters->at(0)->isModified());
}

void TestLibrary::savesAndRevertsCharacters()
{
    const TestDataFolder folder;
    for (const char *name : {"Aria", "Borin", "Cole"})
        folder.addCharacter(QLatin1String(name));
    const CoreObjects objects;
    folder.load();
    const auto change = [] {
        theCharacters->at(2)->rename(QStringLiteral("Abel"));
        theCharacters->at(1)->setDeleted(true);
        theCharacters->remove(1, true);
        Creature *added = theCharacters->at(theCharacters->add(theCharacters->newCharacter()));
        added->setNew(true);
        added->setModified(true);
    };
    const ChangeCounters &counters = theCharacters->counters();
    change();
    QCOMPARE(counters.isDeleted, 1);
    theCharacters->revertAll();
    QCOMPARE(keysOf(*theCharacters), QStringList({"Aria", "Borin", "Cole"}));
    QCOMPARE(counters.isNew + counters.isModified + counters.isDeleted, 0);

    change();
    theCharacters->saveAll();
    QCOMPARE(counters.isNew + counters.isModified + counters.isDeleted, 0);
    NoProgress progress;
    Characters again;
    again.load(folder.path(), folder.path(), progress);
    QCOMPARE(keysOf(again), QStringList({"Abel", "Aria", "New Character"}));
    QVERIFY(!QFile::exists(folder.file(QStringLiteral("Characters/borin.txt"))));
}

void TestLibrary::takesOverAnotherCollection()
{
    const TestDataFolder folder;
    folder.addMonster(QStringLiteral("Rat"));
    NoProgress progress;
    Monsters living;
    addFlagged(living, living.newMonster());
    {
        Monsters loaded;
        loaded.load(folder.path(), folder.path(), progress);
        loaded.at(0)->setModified(true);
        QSignalSpy spy(&living, &Monsters::doTemplatesUpdated);
        living.replaceBy(loaded);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(loaded.count(), 0);
        QCOMPARE(loaded.counters().isModified, 0);
    }
    QCOMPARE(keysOf(living), QStringList({"Rat"}));
    QCOMPARE(living.counters().isModified, 1);
    QCOMPARE(living.counters().isNew, 0);
    living.at(0)->setModified(false);
    QCOMPARE(living.counters().isModified, 0);
    QCOMPARE(living.findGroup(QStringLiteral("rat")), living.at(0));
}

void TestLibrary::asksAboutTheFolder_data()
{
    QTest::addColumn<bool>("exists");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("shown");
    const QString missing =
        QStringLiteral("Directory not Found|Directory <b>Characters</b> not found in Home.|Create");
    const QString empty = QStringLiteral("No Characters Found|No characters could be loaded from "
                                         "<b>Characters</b> directory in Home.|Continue");
    for (const int answer : {0, 1, 2}) {
        QTest::addRow("missing, %d", answer) << false << answer << missing;
        QTest::addRow("empty, %d", answer) << true << answer << empty;
    }
}

void TestLibrary::asksAboutTheFolder()
{
    QFETCH(bool, exists);
    QFETCH(int, answer);
    ScriptedWindows windows;
    windows.folderAnswers << FolderAnswer(answer);
    const QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("Characters"));
    if (exists)
        QDir().mkpath(folder);
    NoProgress progress;
    Characters characters;
    QCOMPARE(int(characters.load(dir.path(), QStringLiteral("Home"), progress)), answer);
    QTEST(windows.shown.join(u'\n'), "shown");
    QCOMPARE(QDir(folder).exists(), exists || answer == 1);
}

void TestLibrary::stopsWhereTheUserCancels()
{
    const TestDataFolder folder;
    for (const char *group : {"Ant", "Bear", "Cat"})
        folder.addMonster(QLatin1String(group));
    Monsters monsters;
    CountingProgress progress(4); // ".", ".." and two files
    QCOMPARE(monsters.load(folder.path(), folder.path(), progress), LoadResult::Cancelled);
    QCOMPARE(keysOf(monsters), QStringList({"Ant", "Bear"}));
}

// Ratios of one run: with a cost by the library's size the larger one would take 20 times as long
// for each of its creatures.
void TestLibrary::costDoesNotGrowWithTheLibrary()
{
    const auto nanosecondsEach = [](int count, bool sameNames) {
        Monsters monsters;
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < count; ++i) {
            QString group = sameNames ? QStringLiteral("Rat") : QStringLiteral("Rat %1").arg(i);
            auto creature = std::make_unique<Creature>();
            creature->setGroup(monsters.uniqueGroup(group));
            monsters.add(std::move(creature));
            monsters.ensureTemplate(group, QStringLiteral("1"), true);
        }
        return double(timer.nsecsElapsed()) / count;
    };
    for (const bool sameNames : {false, true}) {
        nanosecondsEach(500, sameNames); // warms up
        const double small = nanosecondsEach(500, sameNames);
        const double large = nanosecondsEach(10000, sameNames);
        QVERIFY2(large < 6 * small, qPrintable(QStringLiteral("%1 -> %2").arg(small).arg(large)));
    }
}

MORVANE_TEST_MAIN(QGuiApplication, TestLibrary)
#include "tst_library.moc"
