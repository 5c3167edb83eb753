#include <QGuiApplication>

#include "characters.h"
#include "coreobjects.h"
#include "encounters.h"
#include "findcreature.h"
#include "monsters.h"
#include "paths.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class TestLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void sortsAndFinds();
    void findsRenamedCreatures();
    void insertsPassingOverAnEntry();
    void makesClonesAndStandIns();
    void keepsWhatTheFightNames();
    void savesAllMonsters();
    void savesAndRevertsCharacters();
    void goesOnBehindAFailedSave();
    void revertsToTextsOfAnyKind();
    void namesUnsavedWork();
    void takesFiles();
};

namespace {

class CountingProgress : public Progress {
public:
    void setLabel(const QString &text) override { label = text; }
    void step() override { ++steps; }
    bool wasCancelled() const override { return false; }

    QString label;
    int steps = 0;
};

template <typename Collection>
QStringList keysOf(const Collection &collection)
{
    QStringList keys;
    for (int i = 0; i < collection.count(); ++i)
        keys.append(collection.at(i)->keyName());
    return keys;
}

} // namespace

void TestLibrary::sortsAndFinds()
{
    const TestDataFolder folder;
    for (const char *group : {"Wolf", "bear", "Ant", "ape"})
        folder.addMonster(QLatin1String(group));
    folder.write(u"Monsters/template.txt"_s, u"group=x"_s);
    folder.write(u"Monsters/odd.txt"_s, u"no stat block"_s);
    Monsters monsters;
    CountingProgress progress;
    QCOMPARE(monsters.load(folder.path(), folder.path(), progress), LoadResult::Loaded);
    QCOMPARE(keysOf(monsters), QStringList({"Ant", "ape", "bear", "odd.txt", "Wolf"}));
    QCOMPARE(progress.label, "Loading monsters...");
    // With "." and "..", which the count of files includes as well.
    QCOMPARE(progress.steps, 8);
    QCOMPARE(Monsters::fileCount(folder.path()), 8);
    QCOMPARE(Monsters::fileCount(folder.file(u"nowhere"_s)), 0);

    QCOMPARE(monsters.findGroup(u"WOLF"_s), monsters.at(4));
    QCOMPARE(monsters.findGroup(u"Wol"_s), nullptr);
    QCOMPARE(monsters.findFile(u"BEAR.txt"_s), monsters.at(2));
    monsters.at(2)->setDeleted(true);
    QCOMPARE(monsters.findFile(u"bear.txt"_s), nullptr);
    QCOMPARE(monsters.findGroup(u"bear"_s), monsters.at(2));
    QCOMPARE(monsters.at(5), nullptr);
    QCOMPARE(monsters.at(-1), nullptr);
    QCOMPARE(monsters.indexOf(monsters.at(3)), 3);
}

void TestLibrary::findsRenamedCreatures()
{
    const TestDataFolder folder;
    folder.addCharacter(u"Aria"_s);
    folder.addCharacter(u"Borin"_s);
    folder.addMonster(u"Rat"_s);
    const CoreObjects objects;
    folder.load();
    Creature *aria = theCharacters->at(0);
    aria->rename(u"Zoe"_s);
    QCOMPARE(theCharacters->find(u"zoe"_s), aria);
    QCOMPARE(theCharacters->find(u"Aria"_s), nullptr);
    Creature *rat = findCreature(u"Rat (1)"_s, true);
    rat->setName(u"Chief"_s);
    QCOMPARE(findCreature(u"rat (chief)"_s, false), rat);
    QVERIFY(findCreature(u"Rat (1)"_s, true) != rat);
    theMonsters->retireClone(rat);
    QCOMPARE(findCreature(u"Rat (Chief)"_s, false), nullptr);
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
    QCOMPARE(monsters.insertionIndex(u"BEAR"_s), 3);
    QCOMPARE(monsters.insertionIndex(u"aaa"_s), 0);
    QCOMPARE(monsters.insertionIndex(u"zzz"_s), 4);
    // The first entry is about to be renamed.
    QCOMPARE(monsters.insertionIndex(u"Ant"_s, 0), 1);
    QCOMPARE(monsters.insertionIndex(u"Wolf"_s, 3), 4);
    QCOMPARE(monsters.insertionIndex(u"Cat"_s, 3), 4);
    QCOMPARE(monsters.insertionIndex(u"Bear"_s, 1), 3);
}

void TestLibrary::makesClonesAndStandIns()
{
    const TestDataFolder folder;
    folder.addMonster(u"Cave Rat"_s, 20, 3);
    folder.addCharacter(u"Aria"_s);
    const CoreObjects objects;
    folder.load();

    QString group = u"cave RAT"_s;
    Creature *clone = theMonsters->ensureTemplate(group, u"A"_s, true);
    QCOMPARE(group, "Cave Rat");
    QVERIFY(clone != theMonsters->at(0));
    QCOMPARE(clone->displayName(), "Cave Rat (A)");
    QCOMPARE(clone->nameBefore(), "A");
    QCOMPARE(clone->currHP(), 20);
    QCOMPARE(clone->apUsedInEncounter(), 0);
    QVERIFY(clone->shadowVitality() == clone->liveVitality());
    QCOMPARE(findCreature(u"Cave Rat (a)"_s, true), clone);
    QCOMPARE(theMonsters->clones(), QList<Creature *>({clone}));

    Creature *ghost = findCreature(u"Gone (1)"_s, true);
    QVERIFY(ghost->isMissing());
    QVERIFY(findCreature(u"gone (2)"_s, true)->isMissing());
    QCOMPARE(keysOf(*theMonsters), QStringList({"Cave Rat"}));
    QCOMPARE(theMonsters->findGroup(u"Gone"_s), nullptr);
    QCOMPARE(theMonsters->nameState(u"Gone"_s), NameState::Free);
    QCOMPARE(findCreature(u"Gone (1)"_s, true), ghost);
    // Found again by the whole name of its group.
    group = u"Rat (swarm)"_s;
    const Creature *swarm = theMonsters->ensureTemplate(group, u"1"_s, true);
    QCOMPARE(findCreature(u"Rat (swarm) (1)"_s, true), swarm);

    QCOMPARE(findCreature(u"aria"_s, true), theCharacters->at(0));
    Creature *hero = findCreature(u"Nobody"_s, true);
    QVERIFY(hero->isMissing() && !hero->isMonster());
    QCOMPARE(hero->apUsedInEncounter(), 0);
    QCOMPARE(findCreature(u"nobody"_s, true), hero);
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

void TestLibrary::keepsWhatTheFightNames()
{
    const TestDataFolder folder;
    folder.addCharacter(u"Aria"_s);
    folder.addCharacter(u"Borin"_s);
    folder.addMonster(u"Rat"_s);
    const CoreObjects objects;
    folder.load();
    Creature *aria = theCharacters->at(0);
    aria->setDeleted(true);
    theCharacters->remove(0, true);
    theCharacters->saveAll();
    QCOMPARE(theCharacters->count(), 1);
    QCOMPARE(findCreature(u"Aria"_s, true), aria);

    Creature *rat = findCreature(u"Rat (1)"_s, true);
    theMonsters->at(0)->setDeleted(true);
    theMonsters->saveAll();
    QCOMPARE(theMonsters->count(), 0);
    QCOMPARE(findCreature(u"Rat (1)"_s, false), rat);

    Creature *borin = theCharacters->at(0);
    borin->takeDamage(5, rat);
    theCharacters->resetForEncounter();
    theMonsters->resetForEncounter();
    QCOMPARE(borin->currHP(), 30);
    QVERIFY(borin->shadowVitality() == borin->liveVitality());
    QVERIFY(findCreature(u"Aria"_s, true)->isMissing());
    QCOMPARE(findCreature(u"Rat (1)"_s, false), nullptr);
}

void TestLibrary::savesAllMonsters()
{
    const TestDataFolder folder;
    for (const char *group : {"Ant", "Bear", "Cat"})
        folder.addMonster(QLatin1String(group));
    const CoreObjects objects;
    folder.load();
    const ChangeCounters &counters = theMonsters->counters();
    theMonsters->at(0)->setStatBlock(theMonsters->at(0)->statBlock() + u"xp=175\n"_s);
    theMonsters->at(1)->setDeleted(true);
    theMonsters->addNew(theMonsters->newMonster());
    QCOMPARE(counters.isNew, 1);
    QCOMPARE(counters.isModified, 2);
    QCOMPARE(counters.isDeleted, 1);

    const QString root = std::exchange(dataRoot, folder.file(u"nowhere"_s));
    theMonsters->at(1)->setDeleted(false);
    theMonsters->saveAll();
    QCOMPARE(counters.isNew, 1);
    QCOMPARE(counters.isModified, 2);

    dataRoot = root;
    theMonsters->at(1)->setDeleted(true);
    theMonsters->saveAll();
    QCOMPARE(counters.isNew + counters.isModified + counters.isDeleted, 0);
    QCOMPARE(keysOf(*theMonsters), QStringList({"Ant", "Cat", "New Monster"}));
    QVERIFY(folder.read(u"Monsters/ant.txt"_s).endsWith("xp=175\r\n"));
    QVERIFY(!QFile::exists(folder.file(u"Monsters/bear.txt"_s)));
    QVERIFY(folder.read(u"Monsters/new-monster.txt"_s).startsWith("New Monster\r\n"));
}

void TestLibrary::savesAndRevertsCharacters()
{
    const TestDataFolder folder;
    for (const char *name : {"Aria", "Borin", "Cole"})
        folder.addCharacter(QLatin1String(name));
    const CoreObjects objects;
    folder.load();
    const auto change = [] {
        theCharacters->at(2)->rename(u"Abel"_s);
        theCharacters->at(1)->setDeleted(true);
        theCharacters->remove(1, true);
        theCharacters->addNew(theCharacters->newCharacter());
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
    QVERIFY(!QFile::exists(folder.file(u"Characters/borin.txt"_s)));
}

void TestLibrary::goesOnBehindAFailedSave()
{
    const TestDataFolder folder;
    for (const char *group : {"Ant", "Bear", "Cat", "Dog"})
        folder.addMonster(QLatin1String(group));
    const CoreObjects objects;
    folder.load();
    // Folders in the way of two files.
    for (const char *name : {"bear", "cat"}) {
        const QString path = folder.file(u"Monsters/%1.txt"_s.arg(QLatin1String(name)));
        QVERIFY(QFile::remove(path) && QDir().mkpath(path + u"/x"_s));
    }
    for (const int i : {0, 1, 3})
        theMonsters->at(i)->setStatBlock(theMonsters->at(i)->statBlock() + u"xp=175\n"_s);
    theMonsters->at(2)->setDeleted(true);
    theMonsters->saveAll();
    QCOMPARE(theMonsters->changedNames(), QStringList({"Bear", "Cat"}));
    QVERIFY(theMonsters->at(1)->isModified() && theMonsters->at(2)->isDeleted());
    QVERIFY(folder.read(u"Monsters/ant.txt"_s).endsWith("xp=175\r\n"));
    QVERIFY(folder.read(u"Monsters/dog.txt"_s).endsWith("xp=175\r\n"));
}

void TestLibrary::revertsToTextsOfAnyKind()
{
    const TestDataFolder folder;
    folder.addCharacter(u"Aria"_s);
    folder.addMonster(u"Rat"_s);
    folder.write(u"Monsters/odd.txt"_s, u"no stat block"_s);
    folder.write(u"Characters/odd.txt"_s, u"nobody"_s);
    const CoreObjects objects;
    folder.load();
    const Creature *rat = theMonsters->findGroup(u"Rat"_s);
    for (Collection<Creature> *creatures : {static_cast<Collection<Creature> *>(theMonsters),
                                            static_cast<Collection<Creature> *>(theCharacters)}) {
        Creature *odd = creatures->at(creatures->indexOf(creatures == theMonsters
                                                             ? theMonsters->findFile(u"odd.txt"_s)
                                                             : theCharacters->find(u"odd.txt"_s)));
        QVERIFY(odd && odd->isInvalid());
        CreatureData mended = rat->data();
        mended.isMonster = creatures == theMonsters;
        mended.keyName() = u"Mended"_s;
        odd->assign(mended);
        odd->statBlockChanged();
        creatures->resort(odd);
        creatures->revertAll();
        QVERIFY(odd->isInvalid());
        QCOMPARE(odd->keyName().isEmpty() ? odd->name() : odd->keyName(), "odd.txt");
        QCOMPARE(odd->statBlock(), odd->savedStatBlock());
        QCOMPARE(odd->maxHP(), 0);
        QCOMPARE(creatures->changedNames(), QStringList());
    }
}

void TestLibrary::namesUnsavedWork()
{
    const TestDataFolder folder;
    for (const char *name : {"Aria", "Borin"})
        folder.addCharacter(QLatin1String(name));
    folder.addMonster(u"Rat"_s);
    const CoreObjects objects;
    folder.load();
    QCOMPARE(theCharacters->changedNames(), QStringList());
    findCreature(u"Nobody"_s, true);
    Creature *borin = theCharacters->at(1);
    borin->rename(u"Abel"_s);
    QCOMPARE(theCharacters->resort(borin), 0);
    theCharacters->addNew(theCharacters->newCharacter());
    Creature *aria = theCharacters->at(1);
    aria->setDeleted(true);
    theCharacters->remove(1, true);
    QCOMPARE(theCharacters->changedNames(), QStringList({"Abel", "New Character", "Aria"}));
    QCOMPARE(theCharacters->nameState(u"ARIA"_s), NameState::TakenByDeleted);
    QCOMPARE(theCharacters->nameState(u"abel"_s), NameState::Taken);
    QCOMPARE(theCharacters->nameState(u"abel"_s, borin), NameState::Free);
    QCOMPARE(theCharacters->nameState(u"Borin"_s), NameState::Free);
    QCOMPARE(theCharacters->nameState(u"Nobody"_s), NameState::Free);
    QCOMPARE(theCharacters->resort(aria), -1);

    theMonsters->at(0)->setDeleted(true);
    QCOMPARE(theMonsters->changedNames(), QStringList({"Rat"}));
    QCOMPARE(theMonsters->nameState(u"rat"_s), NameState::TakenByDeleted);
    theCharacters->saveAll();
    QCOMPARE(theCharacters->changedNames(), QStringList());
    QCOMPARE(theCharacters->nameState(u"Aria"_s), NameState::Free);
}

void TestLibrary::takesFiles()
{
    const TestDataFolder folder;
    folder.addMonster(u"Rat"_s);
    const CoreObjects objects;
    folder.load();
    const QByteArray rat = folder.read(u"Monsters/rat.txt"_s);
    QVERIFY(QDir().mkpath(folder.file(u"import"_s)));
    const auto write = [&](const QString &name, const QByteArray &text) {
        folder.write(u"import/"_s + name, QString::fromUtf8(text).remove(u'\r'));
        return folder.file(u"import/"_s + name);
    };
    const Creature *wolf =
        theMonsters->takeFile(write(u"wolf.txt"_s, QByteArray(rat).replace("Rat", "Wolf")));
    QVERIFY(wolf);
    QCOMPARE(wolf->group(), "Wolf");
    QCOMPARE(keysOf(*theMonsters), QStringList({"Rat", "Wolf"}));
    QCOMPARE(theMonsters->changedNames(), QStringList());
    QVERIFY(folder.read(u"Monsters/wolf.txt"_s).contains("Wolf"));
    // One that another file has taken already has a number; no file is written over.
    QCOMPARE(theMonsters->takeFile(write(u"other.txt"_s, rat))->group(), "Rat 2");
    // A deleted one is brought back rather than losing the file twice.
    Creature *first = theMonsters->findGroup(u"Rat"_s);
    first->setDeleted(true);
    QCOMPARE(theMonsters->takeFile(write(u"RAT.txt"_s, "Mouse")), first);
    QCOMPARE(theMonsters->changedNames(), QStringList());
    QCOMPARE(folder.read(u"Monsters/rat.txt"_s), rat);
    // What no load takes leaves nothing behind.
    for (const char *name : {"template.txt", "empty.txt"}) {
        QCOMPARE(theMonsters->takeFile(write(QLatin1String(name), name[0] == 'e' ? "" : rat)),
                 nullptr);
        QVERIFY(!QFile::exists(folder.file(u"Monsters/"_s + QLatin1String(name))));
    }
}

MORVANE_TEST_MAIN(QGuiApplication, TestLibrary)
#include "tst_library.moc"
