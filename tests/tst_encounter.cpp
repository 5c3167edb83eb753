// The order of play, the position in it, and what the players may know of it.
#include <QGuiApplication>
#include <QSignalSpy>
#include <limits>

#include "coreobjects.h"
#include "creatures.h"
#include "encounter.h"
#include "findcreature.h"
#include "history.h"
#include "outsidechanges.h"
#include "scriptedwindows.h"
#include "tables.h"
#include "testdata.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class TestEncounter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void orderFollowsTheRolls();
    void groupSharesItsRow();
    void removal();
    void theDeadFall();
    void adjusting();
    void playersKnowLess();
    void outsideChangesAreLogged();

private:
    Creature *add(std::unique_ptr<Creature> creature);
    // Characters with one-letter names, in this order.
    void fill(const QString &names);
    // Those of these names, "X" being the stranger, behind a null.
    QList<Creature *> chosen(const QString &names, Creature *stranger) const;
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

QList<Creature *> TestEncounter::chosen(const QString &names, Creature *stranger) const
{
    QList<Creature *> creatures {nullptr};
    for (const QChar name : names)
        creatures.append(name == u'X' ? stranger : theEncounter->at(name.unicode() - u'A'));
    return creatures;
}

void TestEncounter::orderFollowsTheRolls()
{
    const auto orderOf = [this](const QStringList &row) -> QString {
        theEncounter->reset();
        QList<CreatureInit> entries;
        for (int i = 0; i < 3; ++i) {
            const QString name(QChar(u'A' + i));
            add(makeCharacter(name, 30, numbers(row[1])[i]))->setItem({nullptr, 1, 2});
            entries.append({name, numbers(row[0])[i], numbers(row[2])[i]});
        }
        // Entries of the other kind don't count, nor does a second one.
        entries.append({u"A"_s, 99, 99});
        const InitiativeOrder built = theEncounter->buildOrder(entries, {{u"A"_s, 99, 99}});
        for (int i = 0; i < 3; ++i) {
            if (built.oldItems[i].roll != 1 || built.newItems[i].roll != entries[i].roll
                || built.newItems[i].random != entries[i].random
                || theEncounter->at(i)->initRoll() != 1) // building changes nobody
                return u"item %1"_s.arg(i);
        }
        return order() == u"ABC" ? built.order.names().remove(u", "_s) : order();
    };
    QCOMPARE(differences(u"order"_s, 4, orderOf), QString());
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

void TestEncounter::removal()
{
    const auto stranger = makeCharacter(u"X"_s);
    const auto remove = [&](const QStringList &row) -> QString {
        theEncounter->reset();
        fill(u"ABCD"_s);
        theEncounter->setPosition({3, row[0].toInt(), {}});
        const QSignalSpy counted(theEncounter, &Encounter::doCreatureCountChanged);
        theEncounter->remove(chosen(row[1], stranger.get()));
        return counted.count() == 1 ? u"%1 %2 %3"_s.arg(theEncounter->currentIndex())
                                          .arg(theEncounter->round())
                                          .arg(theEncounter->next()->name())
                                    : u"told %1 times"_s.arg(counted.count());
    };
    QCOMPARE(differences(u"removal"_s, 3, remove), QString());
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

void TestEncounter::adjusting()
{
    const auto stranger = makeCharacter(u"X"_s);
    const auto adjust = [&](const QStringList &row) -> QString {
        theEncounter->reset();
        fill(u"ABCDE"_s);
        theEncounter->setPosition({1, 1, {}});
        const Creature *current = theEncounter->current();
        theEncounter->adjustInitiative(chosen(row[0], stranger.get()), row[1].toInt());
        return theEncounter->current() == current ? order() : u"another's turn"_s;
    };
    QCOMPARE(differences(u"adjusting"_s, 3, adjust), QString());
    theEncounter->reset();
    theEncounter->adjustInitiative({stranger.get()}, 1);
    QCOMPARE(theEncounter->currentIndex(), -1);
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
