// The order of play, the position in it, and what the players may know of it.
#include <QGuiApplication>
#include <QSignalSpy>
#include <limits>

#include "coreobjects.h"
#include "creatures.h"
#include "encounter.h"
#include "history.h"
#include "scriptedwindows.h"
#include "testdata.h"
#include "testhome.h"

class TestEncounter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void orderFollowsTheRolls_data();
    void orderFollowsTheRolls();
    void groupSharesItsRow();
    void manyCreaturesAreOrdered();
    void positionsGoRound();
    void movedCreatureLandsBesideTheCurrent();
    void removal_data();
    void removal();
    void theDeadFall();
    void adjusting_data();
    void adjusting();
    void operationsTellListeners();
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
    QTest::addColumn<QList<int>>("rolls");
    QTest::addColumn<QList<int>>("bonuses");
    QTest::addColumn<QList<int>>("randoms");
    QTest::addColumn<QString>("expected");
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
    QFETCH(QList<int>, rolls);
    QFETCH(QList<int>, bonuses);
    QFETCH(QList<int>, randoms);
    QList<CreatureInit> entries;
    for (int i = 0; i < 3; ++i) {
        const QString name(QChar(u'A' + i));
        add(makeCharacter(name, 30, bonuses[i]))->setItem({nullptr, 1, 2});
        entries.append({name, rolls[i], randoms[i]});
    }
    // Entries of the other kind don't count, nor does a second one.
    const QList<CreatureInit> monsters {{QStringLiteral("A"), 99, 99}};
    entries.append({QStringLiteral("A"), 99, 99});
    const InitiativeOrder built = theEncounter->buildOrder(entries, monsters);
    QTEST(built.order.names().remove(u", "_qs), "expected");
    QCOMPARE(order(), QStringLiteral("ABC"));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(built.oldItems[i].roll, 1);
        QCOMPARE(built.newItems[i].roll, rolls[i]);
        QCOMPARE(theEncounter->at(i)->initRandom(), randoms[i]);
    }
}

void TestEncounter::groupSharesItsRow()
{
    const QString rat = QStringLiteral("Rat");
    Creature *first = add(makeMonster(rat, QStringLiteral("1")));
    Creature *second = add(makeMonster(rat, QStringLiteral("2")));
    Creature *stranger = add(makeMonster(QStringLiteral("Bat"), QStringLiteral("1")));
    stranger->setInitRoll(9);
    theEncounter->buildOrder({}, {{rat, 14, 77}});
    QCOMPARE(first->initRoll(), 14);
    QCOMPARE(second->initRoll(), 14);
    QCOMPARE(first->initRandom(), second->initRandom());
    QCOMPARE(stranger->initRoll(), 0);
    // An expanded row names each monster.
    theEncounter->buildOrder({}, {{QStringLiteral("Rat (2)"), 3, 1}, {rat, 5, 2}});
    QCOMPARE(first->initRoll(), 5);
    QCOMPARE(second->initRoll(), 3);
}

void TestEncounter::manyCreaturesAreOrdered()
{
    QList<CreatureInit> entries;
    QList<Creature *> creatures;
    for (int i = 0; i < 2000; ++i) {
        m_creatures.push_back(makeCharacter(QString::number(i)));
        creatures.append(m_creatures.back().get());
        entries.append({QString::number(i), i % 20, i});
    }
    theEncounter->setOrder(CreatureList(creatures));
    const QList<Creature *> sorted = theEncounter->buildOrder(entries, {}).order.list();
    QCOMPARE(sorted.size(), creatures.size());
    for (int i = 1; i < sorted.size(); ++i) {
        const Creature *before = sorted[i - 1];
        QVERIFY(std::pair(before->initRoll(), before->initRandom())
                > std::pair(sorted[i]->initRoll(), sorted[i]->initRandom()));
    }
}

void TestEncounter::positionsGoRound()
{
    QCOMPARE(theEncounter->nextIndex(), 0);
    QCOMPARE(theEncounter->current(), nullptr);
    QCOMPARE(theEncounter->next(), nullptr);
    fill(QStringLiteral("ABC"));
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
    QTest::addColumn<int>("current");
    QTest::addColumn<QString>("removed");
    QTest::addColumn<int>("currentAfter");
    QTest::addColumn<int>("roundAfter");
    QTest::addColumn<QString>("next");
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
    QFETCH(int, current);
    QFETCH(QString, removed);
    fill(QStringLiteral("ABCD"));
    theEncounter->setPosition({3, current, {}});
    const auto stranger = makeCharacter(QStringLiteral("X"));
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
    Creature *aria = add(makeCharacter(QStringLiteral("Aria")));
    Creature *rat = add(makeMonster(QStringLiteral("Rat"), QStringLiteral("1")));
    Creature *bat = add(makeMonster(QStringLiteral("Bat"), QStringLiteral("1")));
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
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<int>("delta");
    QTest::addColumn<QString>("expected");
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
    QFETCH(QString, chosen);
    QFETCH(int, delta);
    fill(QStringLiteral("ABCDE"));
    theEncounter->setPosition({1, 1, {}});
    const Creature *current = theEncounter->current();
    const auto stranger = makeCharacter(QStringLiteral("X"));
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

void TestEncounter::operationsTellListeners()
{
    fill(QStringLiteral("AB"));
    QStringList heard;
    const QObject listener; // the encounter outlives what it writes to
    connect(theEncounter, &Encounter::doCurrentCreatureChanged, &listener,
            [&heard] { heard.append(QStringLiteral("current")); });
    connect(theEncounter, &Encounter::doCreatureCountChanged, &listener,
            [&heard] { heard.append(QStringLiteral("count")); });
    const QStringList both {QStringLiteral("current"), QStringLiteral("count")};
    const auto heardAfter = [&heard](auto operation) {
        heard.clear();
        operation();
        return heard;
    };
    QCOMPARE(heardAfter([] { theEncounter->setOrder(theEncounter->creatures()); }), both);
    QCOMPARE(heardAfter([] { theEncounter->remove(theEncounter->at(0)); }), both);
    Creature *other = m_creatures.front().get();
    QCOMPARE(heardAfter([other] { theEncounter->insertSorted(other); }), both);
    QCOMPARE(heardAfter([] { theEncounter->adjustInitiative({}, 1); }), both);
    QCOMPARE(heardAfter([] { theEncounter->setCurrentIndex(0); }), both.first(1));
    QCOMPARE(heardAfter([] { theEncounter->setPosition({}); }), both.first(1));
    QCOMPARE(heardAfter([] { theEncounter->move(1, 1); }), QStringList());
    QCOMPARE(heardAfter([] { theEncounter->move(-1, 0); }), QStringList());
    QCOMPARE(heardAfter([] { theEncounter->reset(); }), both);
    QCOMPARE(m_windows->encounterRefreshes, 1);
}

void TestEncounter::labels()
{
    fill(QStringLiteral("AB"));
    theEncounter->setEntry({QStringLiteral("file.txt"), QStringLiteral("The Mill"),
                            QStringLiteral("Dark"), 3, 500, QStringLiteral("Rivers")});
    QCOMPARE(m_windows->encounterText, QStringLiteral("<b> Encounter</b> The Mill"));
    QCOMPARE(m_windows->roundText, QString());
    theEncounter->setPosition({2, 0, {}});
    QCOMPARE(m_windows->roundText, QStringLiteral("<b>Round</b> 2"));
    // The next turn is the second round's first again.
    theEncounter->remove(theEncounter->at(0));
    QCOMPARE(m_windows->roundText, QStringLiteral("<b>Round</b> 1"));
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
    const QString rat = QStringLiteral("Rat");
    Creature *aria = add(makeCharacter(QStringLiteral("Aria")));
    Creature *alive = add(makeMonster(rat, QStringLiteral("1")));
    Creature *hidden = add(makeMonster(rat, QStringLiteral("2")));
    Creature *killed = add(makeMonster(rat, QStringLiteral("3")));
    Creature *setToZero = add(makeMonster(rat, QStringLiteral("4")));
    Creature *removed = add(makeMonster(rat, QStringLiteral("5")));
    Creature *deadCharacter = add(makeCharacter(QStringLiteral("Bren")));
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
    m_folder->addCharacter(QStringLiteral("Aria"));
    m_folder->addMonster(QStringLiteral("Rat"));
    m_folder->load();
    Creature *aria = findCreature(QStringLiteral("Aria"), false);
    Creature *rat = findCreature(QStringLiteral("Rat (1)"), true);
    QVERIFY(aria && rat);
    theEncounter->setOrder(CreatureList(QList<Creature *> {aria, rat}));
    theEncounter->checkVitality(theHistory);
    QCOMPARE(theHistory->eventCount(), 0);

    CreatureData data = aria->data();
    data.maxHP = 44;
    aria->assign(data);
    theEncounter->checkVitality(theHistory);
    QCOMPARE(theHistory->eventCount(), 0);
    theEncounter->markVitalityStale();
    theEncounter->checkVitality(theHistory);
    QCOMPARE(theHistory->eventCount(), 1);
    QVERIFY(theHistory->eventText(0).startsWith(QStringLiteral("Changed Aria:")));
    QVERIFY(aria->liveVitality() == aria->shadowVitality());

    rat->setName(QStringLiteral("Boss"));
    theEncounter->markVitalityStale();
    theEncounter->checkVitality(theHistory);
    QCOMPARE(theHistory->eventText(1), QStringLiteral("Rename Rat (1) -> Rat (Boss)"));
}

MORVANE_TEST_MAIN(QGuiApplication, TestEncounter)
#include "tst_encounter.moc"
