// The order of play, the position in it, and what the players may know of it.
#include <QGuiApplication>
#include <QSignalSpy>
#include <limits>

#include "coreobjects.h"
#include "creatures.h"
#include "datatable.h"
#include "encounter.h"
#include "findcreature.h"
#include "history.h"
#include "outsidechanges.h"
#include "scriptedwindows.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class TestEncounter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void orderFollowsTheRolls_data();
    void orderFollowsTheRolls();
    void groupSharesItsRow();
    void positionsGoRound();
    void movedCreatureLandsBesideTheCurrent();
    void removal_data();
    void removal();
    void theDeadFall();
    void adjusting_data();
    void adjusting();
    void labels();
    void playersKnowLess();
    void outsideChangesAreLogged();

private:
    Creature *add(std::unique_ptr<Creature> creature);
    // Characters with one-letter names, in this order.
    void fill(const QString &names);
    QString order() const { return theEncounter->creatures().names().remove(u", "_qs); }

    std::unique_ptr<ScriptedWindows> m_windows;
    std::unique_ptr<TestDataFolder> m_folder;
    std::unique_ptr<CoreObjects> m_objects;
    std::vector<std::unique_ptr<Creature>> m_creatures;
};

void TestEncounter::init()
{
    failOnWarnings();
    m_windows = std::make_unique<ScriptedWindows>();
    m_folder = std::make_unique<TestDataFolder>();
    m_objects = std::make_unique<CoreObjects>();
}

void TestEncounter::cleanup()
{
    m_objects.reset();
    m_creatures.clear();
    m_folder.reset();
    m_windows.reset();
}

Creature *TestEncounter::add(std::unique_ptr<Creature> creature)
{
    m_creatures.push_back(std::move(creature));
    theEncounter->insert(theEncounter->count(), m_creatures.back().get());
    return m_creatures.back().get();
}

void TestEncounter::fill(const QString &names)
{
    for (const QChar name : names)
        add(makeCharacter(QString(name)));
}

void TestEncounter::orderFollowsTheRolls_data()
{
    addColumns<QList<int>, QList<int>, QList<int>, QString>(
        {"rolls", "bonuses", "randoms", "expected"});
    const auto row = [](const char *name, const QList<int> &rolls, const QList<int> &bonuses,
                        const QList<int> &randoms, const char *expected) {
        QTest::newRow(name) << rolls << bonuses << randoms << QString::fromLatin1(expected);
    };
    row("by roll", {5, 20, 12}, {9, 1, 1}, {9, 1, 1}, "BCA");
    row("by bonus", {12, 12, 12}, {1, 2, 3}, {9, 9, 1}, "CBA");
    row("by chance", {12, 12, 12}, {2, 2, 2}, {1, 3, 2}, "BCA");
    row("full tie", {12, 12, 12}, {2, 2, 2}, {7, 7, 7}, "ABC");
    row("no initiative first", {12, 19, 1000}, {2, 2, NotStated}, {7, 7, 0}, "CBA");
    row("below zero", {-3, 0, -1}, {-5, 2, 2}, {7, 7, 7}, "BCA");
}

void TestEncounter::orderFollowsTheRolls()
{
    auto [rolls, bonuses, randoms] =
        fetch<QList<int>, QList<int>, QList<int>>({"rolls", "bonuses", "randoms"});
    QList<CreatureInit> entries;
    for (int i = 0; i < 3; ++i) {
        const QString name(QChar(u'A' + i));
        add(makeCharacter(name, 30, bonuses[i]))->setItem({nullptr, 1, 2});
        entries.append({name, rolls[i], randoms[i]});
    }
    // Entries of the other kind don't count, nor does a second one.
    const QList<CreatureInit> monsters {{u"A"_s, 99, 99}};
    entries.append({u"A"_s, 99, 99});
    const InitiativeOrder built = theEncounter->buildOrder(entries, monsters);
    QTEST(built.order.names().remove(u", "_qs), "expected");
    QCOMPARE(order(), u"ABC"_s);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(built.oldItems[i].roll, 1);
        QCOMPARE(built.newItems[i].roll, rolls[i]);
        QCOMPARE(built.newItems[i].random, randoms[i]);
        QCOMPARE(theEncounter->at(i)->initRoll(), 1); // building changes nobody
    }
}

void TestEncounter::groupSharesItsRow()
{
    const QString rat = u"Rat"_s;
    add(makeMonster(rat, u"1"_s));
    add(makeMonster(rat, u"2"_s));
    add(makeMonster(u"Bat"_s, u"1"_s))->setInitRoll(9);
    const auto rolls = [](const QList<CreatureInit> &monsters) {
        QList<std::pair<int, int>> result;
        for (const CreatureItem &item : theEncounter->buildOrder({}, monsters).newItems)
            result.append({item.roll, item.random});
        return result;
    };
    QCOMPARE(rolls({{rat, 14, 77}}), (QList<std::pair<int, int>> {{14, 77}, {14, 77}, {0, 0}}));
    // An expanded row names each monster.
    QCOMPARE(rolls({{u"Rat (2)"_s, 3, 1}, {rat, 5, 2}}),
             (QList<std::pair<int, int>> {{5, 2}, {3, 1}, {0, 0}}));
}

void TestEncounter::positionsGoRound()
{
    QCOMPARE(theEncounter->nextIndex(), 0);
    QCOMPARE(theEncounter->current(), nullptr);
    QCOMPARE(theEncounter->next(), nullptr);
    fill(u"ABC"_s);
    QCOMPARE(theEncounter->next(), theEncounter->at(0));
    theEncounter->setPosition({4, 1, {}});
    QCOMPARE(theEncounter->nextPosition(), (EncounterPosition {4, 2, {}}));
    theEncounter->setPosition({4, 2, {theEncounter->at(0)}});
    QCOMPARE(theEncounter->nextPosition(), (EncounterPosition {5, 0, {theEncounter->at(0)}}));
    theEncounter->setCurrentIndex(std::numeric_limits<int>::max());
    QVERIFY(theEncounter->nextIndex() < 3);
    QCOMPARE(theEncounter->current(), nullptr);
}

void TestEncounter::movedCreatureLandsBesideTheCurrent()
{
    // Whether it stood above or below, it ends up next to the creature that was current.
    for (const int from : {0, 1, 3, 4}) {
        for (const bool isBefore : {true, false}) {
            CreatureList list;
            for (int i = 0; i < 5; ++i) {
                m_creatures.push_back(makeCharacter(QString::number(i)));
                list.insertAt(i, m_creatures.back().get());
            }
            const Creature *moved = list.at(from);
            const Creature *current = list.at(2);
            list.move(from,
                      isBefore ? Encounter::indexBeforeCurrent(from, 2)
                               : Encounter::indexAfterCurrent(from, 2));
            QCOMPARE(list.indexOf(moved), list.indexOf(current) + (isBefore ? -1 : 1));
        }
    }
}

void TestEncounter::removal_data()
{
    addColumns<int, QString, int, int, QString>(
        {"current", "removed", "currentAfter", "roundAfter", "next"});
    QTest::newRow("below") << 1 << "C" << 1 << 3 << "D";
    QTest::newRow("above") << 1 << "A" << 0 << 3 << "C";
    QTest::newRow("the current one") << 1 << "B" << 0 << 3 << "C";
    QTest::newRow("the current one on top") << 0 << "A" << 2 << 2 << "B";
    QTest::newRow("the current one at the bottom") << 3 << "D" << 2 << 3 << "A";
    QTest::newRow("several") << 2 << "AC" << 0 << 3 << "D";
    QTest::newRow("stopped") << -1 << "AB" << -1 << 3 << "C";
    QTest::newRow("stranger") << 2 << "X" << 2 << 3 << "D";
}

void TestEncounter::removal()
{
    auto [current, removed] = fetch<int, QString>({"current", "removed"});
    fill(u"ABCD"_s);
    theEncounter->setPosition({3, current, {}});
    const auto stranger = makeCharacter(u"X"_s);
    QList<Creature *> leaving {nullptr};
    for (const QChar name : removed)
        leaving.append(name == u'X' ? stranger.get() : theEncounter->at(name.unicode() - u'A'));
    QSignalSpy counted(theEncounter, &Encounter::doCreatureCountChanged);
    theEncounter->remove(leaving);
    QTEST(theEncounter->currentIndex(), "currentAfter");
    QTEST(theEncounter->round(), "roundAfter");
    QTEST(theEncounter->next()->name(), "next");
    QCOMPARE(counted.count(), 1);
}

void TestEncounter::theDeadFall()
{
    Creature *aria = add(makeCharacter(u"Aria"_s));
    Creature *rat = add(makeMonster(u"Rat"_s, u"1"_s));
    Creature *bat = add(makeMonster(u"Bat"_s, u"1"_s));
    rat->takeDamage(99, aria);
    theEncounter->remove(rat);
    QVERIFY(theEncounter->fallen().isEmpty());
    theEncounter->insert(1, rat);
    theEncounter->setPosition({1, 0, {}});
    theEncounter->remove({rat, bat});
    QCOMPARE(theEncounter->fallen(), QSet<Creature *> {rat});
    theEncounter->remove(aria);
    QVERIFY(!theEncounter->isRunning());
}

void TestEncounter::adjusting_data()
{
    addColumns<QString, int, QString>({"chosen", "delta", "expected"});
    QTest::newRow("up") << "C" << -1 << "ACBDE";
    QTest::newRow("down") << "C" << 1 << "ABDCE";
    QTest::newRow("from the top, by a swap") << "A" << -1 << "EBCDA";
    QTest::newRow("from the bottom") << "E" << 1 << "EBCDA";
    QTest::newRow("two up") << "BC" << -1 << "BCADE";
    QTest::newRow("stranger") << "X" << 1 << "ABCDE";
    QTest::newRow("none") << "" << 1 << "ABCDE";
    QTest::newRow("all around") << "B" << -5 << "ABCDE";
    // What a damaged log may hold: as many rounds as there are, at once.
    QTest::newRow("least") << "A" << std::numeric_limits<int>::min() << "CBADE";
    QTest::newRow("most") << "A" << std::numeric_limits<int>::max() << "CBADE";
}

void TestEncounter::adjusting()
{
    auto [chosen, delta] = fetch<QString, int>({"chosen", "delta"});
    fill(u"ABCDE"_s);
    theEncounter->setPosition({1, 1, {}});
    const Creature *current = theEncounter->current();
    const auto stranger = makeCharacter(u"X"_s);
    QList<Creature *> creatures {nullptr};
    for (const QChar name : chosen)
        creatures.append(name == u'X' ? stranger.get() : theEncounter->at(name.unicode() - u'A'));
    theEncounter->adjustInitiative(creatures, delta);
    QTEST(order(), "expected");
    QCOMPARE(theEncounter->current(), current);
    theEncounter->reset();
    theEncounter->adjustInitiative(creatures, delta);
    QCOMPARE(theEncounter->currentIndex(), -1);
}

void TestEncounter::labels()
{
    fill(u"AB"_s);
    theEncounter->setEntry({u"file.txt"_s, u"The Mill"_s, u"Dark"_s, 3, 500, u"Rivers"_s});
    QCOMPARE(m_windows->encounterText, u"<b> Encounter</b> The Mill"_s);
    QCOMPARE(m_windows->roundText, QString());
    theEncounter->setPosition({2, 0, {}});
    QCOMPARE(m_windows->roundText, u"<b>Round</b> 2"_s);
    // The next turn is the second round's first again.
    theEncounter->remove(theEncounter->at(0));
    QCOMPARE(m_windows->roundText, u"<b>Round</b> 1"_s);
    theEncounter->setPosition({2, -1, {}});
    QCOMPARE(m_windows->roundText, QString());
    // Its own texts, not the file's.
    const EncounterEntry entry = theEncounter->entry();
    QCOMPARE(entry.xp, 500);
    QVERIFY(entry.fileName.isEmpty() && entry.adventure.isEmpty());
    theEncounter->reset();
    QCOMPARE(m_windows->encounterText, QString());
    QCOMPARE(theEncounter->level(), 0);
}

void TestEncounter::playersKnowLess()
{
    const QString rat = u"Rat"_s;
    Creature *aria = add(makeCharacter(u"Aria"_s));
    Creature *alive = add(makeMonster(rat, u"1"_s));
    Creature *hidden = add(makeMonster(rat, u"2"_s));
    Creature *killed = add(makeMonster(rat, u"3"_s));
    Creature *setToZero = add(makeMonster(rat, u"4"_s));
    Creature *removed = add(makeMonster(rat, u"5"_s));
    Creature *deadCharacter = add(makeCharacter(u"Bren"_s));
    hidden->setHidden(true);
    removed->takeDamage(99, aria);
    killed->takeDamage(99, aria);
    setToZero->setCurrHP(0);
    deadCharacter->takeDamage(99, alive);

    // Without a fight the monsters are nobody's business.
    QCOMPARE(theEncounter->playersView().rows, (QList<Creature *> {aria, deadCharacter}));
    QVERIFY(theEncounter->playersView().kills.isEmpty());

    theEncounter->setPosition({1, 0, {}});
    theEncounter->remove({removed, deadCharacter});
    QCOMPARE(theEncounter->playersView().rows, (QList<Creature *> {aria, alive}));
    QCOMPARE(theEncounter->playersView().kills.values(), (QList<Creature *> {removed, killed}));
    // A preview kills nobody.
    alive->setRestAdditions(-50, 0, 0);
    QVERIFY(theEncounter->playersView().rows.contains(alive));
}

void TestEncounter::outsideChangesAreLogged()
{
    m_folder->addCharacter(u"Aria"_s);
    m_folder->addMonster(u"Rat"_s);
    m_folder->load();
    Creature *aria = findCreature(u"Aria"_s, false);
    Creature *rat = findCreature(u"Rat (1)"_s, true);
    QVERIFY(aria && rat);
    theEncounter->setOrder(CreatureList(QList<Creature *> {aria, rat}));
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->eventCount(), 0);

    CreatureData data = aria->data();
    data.maxHP = 44;
    aria->assign(data);
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->eventCount(), 0);
    theEncounter->markVitalityStale();
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->eventCount(), 1);
    QVERIFY(theHistory->eventText(0).startsWith(u"Changed Aria:"_s));
    QVERIFY(aria->liveVitality() == aria->shadowVitality());

    rat->setName(u"Boss"_s);
    theEncounter->markVitalityStale();
    checkVitality(theHistory->getStream());
    QCOMPARE(theHistory->eventText(1), u"Rename Rat (1) -> Rat (Boss)"_s);
}

MORVANE_TEST_MAIN(QGuiApplication, TestEncounter)
#include "tst_encounter.moc"
