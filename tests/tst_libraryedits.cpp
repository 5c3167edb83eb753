// The library edited at random beside a fight: what a fresh start reads is what stood in memory.
#include <QGuiApplication>
#include <QRandomGenerator>

#include "appendevent.h"
#include "characters.h"
#include "coreobjects.h"
#include "creaturetext.h"
#include "encounter.h"
#include "encounters.h"
#include "event.h"
#include "monsters.h"
#include "rosterevents.h"
#include "testdata.h"
#include "testhome.h"
#include "vitalityevents.h"

using namespace Qt::StringLiterals;

class TestLibraryEdits : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void startsAsItStood_data();
    void startsAsItStood();

private:
    template <typename Entry>
    Entry *anyOf(const Collection<Entry> &entries)
    {
        return entries.at(m_random.bounded(entries.count()));
    }
    void edit();
    void renameHero();
    void renameTemplate();
    void fight();
    void joinOrLeave();
    static QStringList state();

    std::unique_ptr<TestDataFolder> m_folder;
    std::unique_ptr<CoreObjects> m_core;
    QRandomGenerator m_random;
};

namespace {

void saveAll()
{
    theCharacters->saveAll();
    theMonsters->saveAll();
    theEncounters->saveAll();
}

void revertAll()
{
    theCharacters->revertAll();
    theMonsters->revertAll();
    theEncounters->revertAll();
}

} // namespace

void TestLibraryEdits::init()
{
    failOnWarnings();
    m_core.reset();
    m_folder.reset(); // it gives the last data folder back
    m_folder = std::make_unique<TestDataFolder>();
    for (const char *name : {"Aria", "Borin", "Cleo"})
        m_folder->addCharacter(QLatin1String(name));
    for (const char *group : {"Rat", "Ogre"})
        m_folder->addMonster(QLatin1String(group));
    m_folder->write(u"Encounters/e.txt"_s, u"name=e\ndescription=\nRat=1\nOgre=1\n"_s);
    m_core = std::make_unique<CoreObjects>();
    m_folder->load();
}

// Whoever fights, whatever the library holds, and of which file each is.
QStringList TestLibraryEdits::state()
{
    QStringList lines;
    for (Creature *creature : theEncounter->creatures())
        lines << u"%1 of '%2' %3/%4 %5"_s.arg(creature->displayName(), creature->fileName())
                     .arg(creature->currHP())
                     .arg(creature->maxHP())
                     .arg(creature->isMissing());
    QStringList heroes;
    for (int i = 0; i < theCharacters->count(); ++i)
        heroes << theCharacters->at(i)->name() + u" of "_s + theCharacters->at(i)->fileName();
    heroes.sort();
    lines << heroes << theCharacters->changedNames();
    for (int i = 0; i < theMonsters->count(); ++i)
        lines << theMonsters->at(i)->group() + u" of "_s + theMonsters->at(i)->fileName();
    return lines << QString::fromUtf8(theEncounters->at(0)->image(true));
}

void TestLibraryEdits::renameHero()
{
    const QStringList names {u"Aria"_s, u"Borin"_s, u"Cleo"_s, u"Dora"_s};
    const QString &name = names.at(m_random.bounded(int(names.size())));
    Creature *hero = anyOf(*theCharacters);
    if (theCharacters->nameState(name, hero) != NameState::Free)
        return;
    hero->rename(name);
    theCharacters->resort(hero);
}

void TestLibraryEdits::renameTemplate()
{
    const QStringList groups {u"Rat"_s, u"Ogre"_s, u"Bat"_s};
    const QString &group = groups.at(m_random.bounded(int(groups.size())));
    Creature *monster = anyOf(*theMonsters);
    const QString oldGroup = monster->group();
    if (theMonsters->nameState(group, monster) != NameState::Free)
        return;
    monster->setGroup(group);
    monster->setStatBlock(replacedName(monster->statBlock(), oldGroup, group));
    theMonsters->resort(monster);
    theEncounters->templateRenamed(oldGroup, group);
}

void TestLibraryEdits::fight()
{
    if (theEncounter->count() > 0)
        appendEvent<DamageEvent>(nullptr, theEncounter->at(m_random.bounded(theEncounter->count())),
                                 2);
}

void TestLibraryEdits::joinOrLeave()
{
    const CreatureList heroes(QList<Creature *> {anyOf(*theCharacters)});
    if (theEncounter->contains(heroes.at(0)))
        appendEvent<RemoveCreaturesEvent>(heroes.list());
    else
        appendEvent<AddCharactersEvent>(heroes, false, itemsOf(heroes));
}

void TestLibraryEdits::edit()
{
    switch (m_random.bounded(10)) {
    case 0:
    case 1:
        return renameHero();
    case 2:
        return renameTemplate();
    case 3:
        if (Creature *hero = anyOf(*theCharacters); theEncounter->contains(hero))
            hero->setField(&CreatureData::maxHP, m_random.bounded(20, 50));
        return;
    case 4:
        return saveAll();
    case 5:
        return revertAll();
    case 6:
        return joinOrLeave();
    case 7:
        for (int i = m_random.bounded(4); i > 0; --i)
            theHistory->stepBack();
        return;
    case 8:
        for (int i = m_random.bounded(4); i > 0; --i)
            theHistory->stepForward();
        return;
    default:
        return fight();
    }
}

void TestLibraryEdits::startsAsItStood_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 100; ++seed)
        QTest::addRow("seed %d", seed) << seed;
}

void TestLibraryEdits::startsAsItStood()
{
    QFETCH(const int, seed);
    m_random.seed(quint32(seed));
    for (int round = 0; round < 4; ++round) {
        for (int i = 0; i < 12; ++i) {
            edit();
            for (const EncounterMonster &monster : theEncounters->at(0)->monsters())
                QVERIFY2(theMonsters->findGroup(monster.group), qPrintable(monster.group));
        }
        saveAll();
        fight();
        theHistory->truncate();
        logOutsideChanges();
        const QStringList stood = state();
        m_core.reset();
        m_core = std::make_unique<CoreObjects>();
        m_folder->load();
        theHistory->load();
        QCOMPARE(state().join(u"\n"), stood.join(u"\n"));
    }
}

MORVANE_TEST_MAIN(QGuiApplication, TestLibraryEdits)
#include "tst_libraryedits.moc"
