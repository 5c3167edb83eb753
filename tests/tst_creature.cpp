// The record of a creature, the lists of creatures, and the uses of a power.
#include <QGuiApplication>
#include <QSignalSpy>

#include "coreobjects.h"
#include "creaturelist.h"
#include "creatures.h"
#include "effect.h"
#include "encounter.h"
#include "testhome.h"

using namespace Qt::StringLiterals;

class TestCreature : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnWarnings(); }
    void recordLeavesTheFightAlone();
    void editedFieldsRewriteTheText();
    void vitalityRewritesOnlyWhatChanged();
    void effectsKeepTheirPlaces();
    void listSortsByGroupAndNumber();
};

void TestCreature::recordLeavesTheFightAlone()
{
    const auto aria = makeCharacter(u"Aria"_s);
    Effect prone(nullptr, aria.get(), EffectType::Prone, EffectEnd::Special);
    aria->addEffect(&prone);
    aria->takeDamage(7, nullptr);
    const CreatureState wounded = aria->state();

    CreatureData reread = aria->data();
    reread.maxHP = 40;
    reread.senses = u"darkvision"_s;
    aria->assign(reread);
    QCOMPARE(aria->maxHP(), 40);
    QCOMPARE(aria->senses(), u"Darkvision"_s);
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
    QCOMPARE(clone.name(), u"Aria"_s);
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
    aria.setField(&CreatureData::race, u"Elf"_s);
    QVERIFY(aria.statBlock().contains(QLatin1String("armour-class=17")));
    QVERIFY(aria.statBlock().contains(QLatin1String("race=Elf")));
    QVERIFY(aria.isModified());
    QCOMPARE(aria.data().strength.modifier, 9);
    aria.setAbilityScore(&CreatureData::strength, 14);
    QCOMPARE(aria.data().strength, (Ability {14, NoModifier}));
    QVERIFY(aria.statBlock().contains(QLatin1String("str=14")));
    QVERIFY(updates.count() >= 3);
}

void TestCreature::vitalityRewritesOnlyWhatChanged()
{
    const auto aria = makeCharacter(u"Aria"_s);
    const auto rat = makeMonster(u"Rat"_s, u"1"_s);
    aria->setStatBlock(u"as the player laid it out"_s);
    rat->setStatBlock(u"as it was pasted"_s);
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
    const auto aria = makeCharacter(u"Aria"_s);
    Effect first(nullptr, aria.get(), EffectType::Prone, EffectEnd::Special);
    Effect second(nullptr, aria.get(), EffectType::Dazed, EffectEnd::Special);
    Effect third(nullptr, aria.get(), EffectType::Slowed, EffectEnd::Special);
    connect(aria.get(), &Creature::doCreatureEffectsChanged, this,
            [&heard] { heard.append(u"effects"_s); });
    connect(aria.get(), &Creature::doCreatureUpdated, this,
            [&heard] { heard.append(u"updated"_s); });
    aria->addEffect(&first);
    aria->addEffect(&third);
    aria->insertEffect(1, &second);
    QCOMPARE(aria->effects(), (QList<Effect *> {&first, &second, &third}));
    QCOMPARE(heard.mid(0, 2), (QStringList {u"effects"_s, u"updated"_s}));
    QCOMPARE(aria->removeEffect(&second), 1);
    heard.clear();
    QCOMPARE(aria->removeEffect(&second), -1);
    QCOMPARE(heard, (QStringList {u"effects"_s, u"updated"_s}));
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
    const auto ratTen = makeMonster(u"rat"_s, u"R10"_s);
    const auto ratNine = makeMonster(u"Rat"_s, u"r9"_s);
    const auto otherNine = makeMonster(u"Rat"_s, u"R9"_s);
    const auto bat = makeMonster(u"Bat"_s, u"1"_s);
    const auto aria = makeCharacter(u"Aria"_s);
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
    QCOMPARE(oneByOne.names(), u"Aria, Bat (1), Rat (r9), Rat (R9), rat (R10)"_s);
    QCOMPARE(CreatureList(items), oneByOne);
    QCOMPARE(CreatureList(vitality), oneByOne);
}

MORVANE_TEST_MAIN(QGuiApplication, TestCreature)
#include "tst_creature.moc"
