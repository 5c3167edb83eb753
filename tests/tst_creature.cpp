// The record of a creature, the lists of creatures, and the uses of a power.
#include <QGuiApplication>
#include <QSignalSpy>

#include "coreobjects.h"
#include "creaturelist.h"
#include "creatures.h"
#include "effect.h"
#include "encounter.h"
#include "scriptedwindows.h"
#include "switchboard.h"
#include "testhome.h"

class TestCreature : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void startsAsRestedStranger();
    void recordLeavesTheFightAlone();
    void powerMoves_data();
    void powerMoves();
    void firstPowerOfANameIsFound();
    void flagsCount();
    void modifiedFollowsTheText();
    void editedFieldsRewriteTheText();
    void settersTellListeners();
    void editorsTellOnlyChanges();
    void vitalityRewritesOnlyWhatChanged();
    void effectsKeepTheirPlaces();
    void listSortsByGroupAndNumber();
    void listTakesAnyIndex();
    void listsByKind();
};

void TestCreature::startsAsRestedStranger()
{
    const Creature creature;
    QVERIFY(creature.isMonster());
    QVERIFY(!creature.takesTurns());
    QVERIFY(creature.isStable());
    QCOMPARE(creature.apUsedInEncounter(), 1);
    QCOMPARE(creature.displayName(), QString());
    QVERIFY(!creature.isDead());
    QVERIFY(!creature.hasBeenInCombat());
}

void TestCreature::recordLeavesTheFightAlone()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    Effect prone(nullptr, aria.get(), EffectType::Prone, EffectEnd::Special);
    aria->addEffect(&prone);
    aria->takeDamage(7, nullptr);
    const CreatureState wounded = aria->state();

    CreatureData reread = aria->data();
    reread.maxHP = 40;
    reread.senses = QStringLiteral("darkvision");
    aria->assign(reread);
    QCOMPARE(aria->maxHP(), 40);
    QCOMPARE(aria->senses(), QStringLiteral("Darkvision"));
    QVERIFY(aria->state() == wounded);
    QCOMPARE(aria->effects(), QList<Effect *> {&prone});
    // The shadow still holds what the history knows.
    QCOMPARE(aria->shadowVitality().maxHP, 30);

    Creature clone;
    clone.copyFrom(aria.get());
    QCOMPARE(clone.maxHP(), 40);
    QCOMPARE(clone.currHP(), 0);
    QCOMPARE(clone.effectCount(), 0);
    clone.copyFrom(nullptr);
    QCOMPARE(clone.name(), QStringLiteral("Aria"));
}

void TestCreature::powerMoves_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("used");
    QTest::addColumn<int>("expected");
    const int whenUsed[] = {1, 1, 3, 3, 3};
    const int whenUnused[] = {0, 2, 2, 4, 4};
    for (int state = 0; state < 5; ++state) {
        QTest::addRow("%d used", state) << state << true << whenUsed[state];
        QTest::addRow("%d unused", state) << state << false << whenUnused[state];
    }
}

void TestCreature::powerMoves()
{
    QFETCH(int, state);
    QFETCH(bool, used);
    Power power;
    power.usageState = state;
    power.setUsed(used);
    QTEST(power.usageState, "expected");
    QCOMPARE(power.isUsed(), power.usageState == 1 || power.usageState == 3);
}

void TestCreature::firstPowerOfANameIsFound()
{
    CreatureData data;
    for (const auto *name : {"Bite", "Claw", "Bite"}) {
        Power power;
        power.name = QLatin1String(name);
        data.powers.append(power);
    }
    Creature creature;
    creature.assign(data);
    QCOMPARE(creature.powerByName(QStringLiteral("Bite")), creature.powerAt(0));
    QCOMPARE(creature.powerByName(QStringLiteral("bite")), nullptr);
    QCOMPARE(creature.powerAt(3), nullptr);
    QCOMPARE(creature.powerAt(-1), nullptr);
    creature.powerAt(2)->setUsed(true);
    QVERIFY(creature.powers().at(2).isUsed());
    QVERIFY(!data.powers.at(2).isUsed());
}

void TestCreature::flagsCount()
{
    ChangeCounters counters;
    Creature creature;
    creature.setNew(true);
    QVERIFY(creature.isNew());
    creature.setChangeCounters(&counters);
    creature.setNew(true);
    QCOMPARE(counters.isNew, 0);
    creature.setNew(false);
    QCOMPARE(counters.isNew, -1);
    creature.setModified(true);
    creature.setDeleted(true);
    QCOMPARE(counters.isModified, 1);
    QCOMPARE(counters.isDeleted, 1);
    const int before = counters.nameChanges;
    creature.setName(QStringLiteral("1"));
    creature.setGroup(QStringLiteral("Rat"));
    QCOMPARE(counters.nameChanges, before + 2);
}

void TestCreature::modifiedFollowsTheText()
{
    CoreObjects objects;
    Creature creature;
    creature.setSavedStatBlock(QStringLiteral("old"));
    creature.setStatBlock(QStringLiteral("new"));
    QVERIFY(creature.isModified());
    QVERIFY(theEncounter->isVitalityStale());
    creature.setStatBlock(QStringLiteral("old"));
    QVERIFY(!creature.isModified());
    // What was never saved isn't changed against anything.
    creature.setNew(true);
    creature.setStatBlock(QStringLiteral("new"));
    QVERIFY(!creature.isModified());
}

void TestCreature::editedFieldsRewriteTheText()
{
    CreatureData data;
    data.isMonster = false;
    data.strength = {18, 9};
    Creature aria;
    aria.assign(data);
    QSignalSpy updates(&aria, &Creature::doCreatureUpdated);
    aria.setField(&CreatureData::armourClass, 17);
    aria.setField(&CreatureData::race, QStringLiteral("Elf"));
    QVERIFY(aria.statBlock().contains(QLatin1String("armour-class=17")));
    QVERIFY(aria.statBlock().contains(QLatin1String("race=Elf")));
    QVERIFY(aria.isModified());
    QCOMPARE(aria.data().strength.modifier, 9);
    aria.setAbilityScore(&CreatureData::strength, 14);
    QCOMPARE(aria.data().strength, (Ability {14, NoModifier}));
    QVERIFY(aria.statBlock().contains(QLatin1String("str=14")));
    QVERIFY(updates.count() >= 3);
}

void TestCreature::settersTellListeners()
{
    ScriptedWindows windows;
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    QSignalSpy updates(aria.get(), &Creature::doCreatureUpdated);
    QSignalSpy hub(switchBoard(), &SwitchBoard::doCreatureUpdated);
    aria->setDelayed(true);
    aria->setReadied(true);
    QCOMPARE(windows.jumpInRefreshes, 2);
    aria->setHidden(true);
    aria->setAlias(QStringLiteral("Nobody"));
    aria->setAliasMode(1);
    QCOMPARE(windows.listRefreshes, 3);
    aria->setTurnCount(3);
    QCOMPARE(updates.count(), 6);
    QCOMPARE(hub.count(), 6);
    QCOMPARE(hub.first().first().value<Creature *>(), aria.get());
}

void TestCreature::editorsTellOnlyChanges()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    QSignalSpy updates(aria.get(), &Creature::doCreatureUpdated);
    for (int round = 0; round < 2; ++round) {
        aria->setCurrHP(11);
        aria->setCurrHS(3);
        aria->setCurrAP(2);
        aria->setInitRoll(15);
        aria->setInitRandom(99);
        aria->setItem({aria.get(), 15, 99});
        aria->setTempHP(4);
    }
    QCOMPARE(updates.count(), 6);
    aria->setItem({aria.get(), 15, 98});
    QCOMPARE(updates.count(), 7);
    QCOMPARE(aria->item().random, 98);
}

void TestCreature::vitalityRewritesOnlyWhatChanged()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    const auto rat = makeMonster(QStringLiteral("Rat"), QStringLiteral("1"));
    aria->setStatBlock(QStringLiteral("as the player laid it out"));
    rat->setStatBlock(QStringLiteral("as it was pasted"));
    for (Creature *creature : {aria.get(), rat.get()}) {
        CreatureVitality vitality = creature->liveVitality();
        QVERIFY(vitality == creature->shadowVitality());
        const QString text = creature->statBlock();
        vitality.currHP = 5;
        creature->setVitality(vitality);
        QCOMPARE(creature->currHP(), 5);
        QCOMPARE(creature->statBlock(), text);
        QVERIFY(!(creature->liveVitality() == creature->shadowVitality()));

        vitality.maxHP = 77;
        creature->setVitality(vitality);
        QCOMPARE(creature->maxHP(), 77);
        // A monster's text is the source of its numbers, a character's their copy.
        QCOMPARE(creature->statBlock() == text, creature->isMonster());
        creature->syncShadows();
        QVERIFY(creature->liveVitality() == creature->shadowVitality());
    }
    QVERIFY(aria->statBlock().contains(QLatin1String("hit-points=77")));
}

void TestCreature::effectsKeepTheirPlaces()
{
    QStringList heard; // outlives the effects, which tell of their end
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    Effect first(nullptr, aria.get(), EffectType::Prone, EffectEnd::Special);
    Effect second(nullptr, aria.get(), EffectType::Dazed, EffectEnd::Special);
    Effect third(nullptr, aria.get(), EffectType::Slowed, EffectEnd::Special);
    connect(aria.get(), &Creature::doCreatureEffectsChanged, this,
            [&heard] { heard.append(QStringLiteral("effects")); });
    connect(aria.get(), &Creature::doCreatureUpdated, this,
            [&heard] { heard.append(QStringLiteral("updated")); });
    aria->addEffect(&first);
    aria->addEffect(&third);
    aria->insertEffect(1, &second);
    QCOMPARE(aria->effects(), (QList<Effect *> {&first, &second, &third}));
    QCOMPARE(heard.mid(0, 2), (QStringList {QStringLiteral("effects"), QStringLiteral("updated")}));
    QCOMPARE(aria->removeEffect(&second), 1);
    heard.clear();
    QCOMPARE(aria->removeEffect(&second), -1);
    QCOMPARE(heard, (QStringList {QStringLiteral("effects"), QStringLiteral("updated")}));
    // What a damaged log may ask for.
    aria->insertEffect(-5, &second);
    QCOMPARE(aria->indexOfEffect(&second), 0);
    aria->addEffect(&second);
    aria->addEffect(nullptr);
    QCOMPARE(aria->effectCount(), 3);
    QCOMPARE(aria->effectAt(3), nullptr);
    QCOMPARE(aria->effectAt(-1), nullptr);
}

void TestCreature::listSortsByGroupAndNumber()
{
    const auto ratTen = makeMonster(QStringLiteral("rat"), QStringLiteral("R10"));
    const auto ratNine = makeMonster(QStringLiteral("Rat"), QStringLiteral("r9"));
    const auto otherNine = makeMonster(QStringLiteral("Rat"), QStringLiteral("R9"));
    const auto bat = makeMonster(QStringLiteral("Bat"), QStringLiteral("1"));
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    const QList<Creature *> unsorted {ratTen.get(), ratNine.get(), bat.get(), otherNine.get(),
                                      aria.get()};
    CreatureList oneByOne;
    QList<CreatureItem> items {{nullptr, 1, 2}};
    QList<CreatureVitality> vitality;
    for (Creature *creature : unsorted) {
        oneByOne.insertSorted(creature);
        items.append(creature->item());
        vitality.append(creature->liveVitality());
    }
    oneByOne.insertSorted(nullptr);
    QCOMPARE(oneByOne.names(), QStringLiteral("Aria, Bat (1), Rat (r9), Rat (R9), rat (R10)"));
    QCOMPARE(CreatureList(items), oneByOne);
    QCOMPARE(CreatureList(vitality), oneByOne);
}

void TestCreature::listTakesAnyIndex()
{
    QList<std::unique_ptr<Creature>::pointer> pointers;
    std::vector<std::unique_ptr<Creature>> creatures;
    for (const char *name : {"A", "B", "C"}) {
        creatures.push_back(makeCharacter(QLatin1String(name)));
        pointers.append(creatures.back().get());
    }
    const auto x = makeCharacter(QStringLiteral("X"));
    const CreatureList abc({pointers[0], nullptr, pointers[1], pointers[2]});
    const auto after = [&abc](auto change) {
        CreatureList list = abc;
        change(list);
        return list.names().remove(QLatin1String(", "));
    };
    const int far = 1 << 30;
    QCOMPARE(after([](CreatureList &l) { l.move(0, 2); }), QStringLiteral("BCA"));
    QCOMPARE(after([](CreatureList &l) { l.move(2, 0); }), QStringLiteral("CAB"));
    QCOMPARE(after([=](CreatureList &l) { l.move(0, far); }), QStringLiteral("BCA"));
    QCOMPARE(after([=](CreatureList &l) { l.move(far, 0); }), QStringLiteral("ABC"));
    QCOMPARE(after([](CreatureList &l) { l.move(-1, 2); }), QStringLiteral("ABC"));
    QCOMPARE(after([](CreatureList &l) { l.swap(0, 2); }), QStringLiteral("CBA"));
    QCOMPARE(after([](CreatureList &l) { l.swap(0, 3); }), QStringLiteral("ABC"));
    QCOMPARE(after([](CreatureList &l) { l.removeAt(3); }), QStringLiteral("ABC"));
    QCOMPARE(after([](CreatureList &l) { l.removeAt(1); }), QStringLiteral("AC"));
    QCOMPARE(after([&x](CreatureList &l) { l.insertAt(-7, x.get()); }), QStringLiteral("XABC"));
    QCOMPARE(after([&](CreatureList &l) { l.insertAt(far, x.get()); }), QStringLiteral("ABCX"));
    QCOMPARE(after([](CreatureList &l) { l.insertAt(1, nullptr); }), QStringLiteral("ABC"));
    QCOMPARE(after([&abc](CreatureList &l) { l.insertList(1, abc); }), QStringLiteral("AABCBC"));
    QCOMPARE(after([&abc](CreatureList &l) { l.insertList(-1, abc); }), QStringLiteral("ABCABC"));
    QCOMPARE(abc.at(3), nullptr);
    QCOMPARE(abc.at(-1), nullptr);
    QCOMPARE(abc.indexOf(x.get()), -1);
}

void TestCreature::listsByKind()
{
    const auto aria = makeCharacter(QStringLiteral("Aria"));
    const auto rat = makeMonster(QStringLiteral("Rat"), QStringLiteral("1"));
    const auto bren = makeCharacter(QStringLiteral("Bren"));
    CreatureList list({aria.get(), rat.get(), bren.get()});
    QCOMPARE(list.filtered(CreatureList::Monsters).list(), QList<Creature *> {rat.get()});
    QCOMPARE(list.filtered(CreatureList::Characters).count(), 2);
    QCOMPARE(list.filtered(CreatureList::Both), list);
    QCOMPARE(list.monsterCount(), 1);
    QVERIFY(list.containsLivingCharacter());
    aria->takeDamage(500, nullptr);
    bren->takeDamage(500, nullptr);
    QVERIFY(!list.containsLivingCharacter());
    list.setHidden(true);
    QVERIFY(rat->isHidden() && bren->isHidden());
    list.removeKind(false);
    QCOMPARE(list.list(), QList<Creature *> {rat.get()});
}

MORVANE_TEST_MAIN(QGuiApplication, TestCreature)
#include "tst_creature.moc"
