#include "testfight.h"
#include "findcreature.h"

#include "characters.h"
#include "creature.h"
#include "effect.h"
#include "encounter.h"
#include "history.h"
#include "monsters.h"

TestFight::TestFight()
{
    m_folder.addCharacter(QStringLiteral("Aria"), 30, 5);
    m_folder.addCharacter(QStringLiteral("Borin"), 25, 1);
    m_folder.addCharacter(QStringLiteral("Cleo"), 25, 3);
    m_folder.addMonster(QStringLiteral("Rat"), 12, 4);
    m_folder.addMonster(QStringLiteral("Ogre"), 60, -1);
    makeObjects();
}

TestFight::~TestFight() = default;

void TestFight::makeObjects()
{
    m_core.reset();
    m_core = std::make_unique<CoreObjects>();
    m_folder.load();
    Creature *rat = theMonsters->findGroup(QStringLiteral("Rat"));
    if (!rat)
        qFatal("the test's library wasn't read");
    CreatureData data = rat->data();
    Power bite;
    bite.name = QStringLiteral("Bite");
    bite.usageKind = 8;
    Power squeal;
    squeal.name = QStringLiteral("Squeal");
    data.powers = {bite, squeal};
    rat->assign(data);
}

void TestFight::restart()
{
    makeObjects();
    theHistory->load();
}

void TestFight::forget()
{
    theHistory->clear();
    theEncounter->reset();
    theMonsters->resetForEncounter();
    theCharacters->resetForEncounter();
}

Creature *TestFight::creature(const QString &displayName)
{
    return findCreature(displayName, true);
}

QList<Creature *> TestFight::creatures(const QStringList &displayNames)
{
    QList<Creature *> result;
    for (const QString &name : displayNames)
        result << creature(name);
    return result;
}

void TestFight::setRoster(const QStringList &displayNames)
{
    theEncounter->setOrder(CreatureList(creatures(displayNames)));
}

namespace {

QString vitalityText(const CreatureVitality &v)
{
    const std::pair<const char *, int> values[] = {
        {"init", v.initBonus}, {"maxHP", v.maxHP},   {"hp", v.currHP},    {"maxHS", v.maxHS},
        {"hs", v.currHS},      {"value", v.hsValue}, {"maxAP", v.initAP}, {"ap", v.currAP}};
    QStringList numbers;
    for (const auto &[name, value] : values)
        numbers << QLatin1String(name) + u'=' + QString::number(value);
    return numbers.join(u' ');
}

QString creatureText(Creature *creature, TestFight::Details details)
{
    const CreatureState &state = creature->state();
    QString text = creature->displayName();
    text += u' ' + vitalityText(creature->liveVitality());
    text += QStringLiteral(" temp %1 fails %2 wind %3 used %4 stable %5 turns %6")
                .arg(state.tempHP)
                .arg(state.failedDeathSaves)
                .arg(state.secondWindUsed != 0)
                .arg(state.apUsedInEncounter)
                .arg(state.stable)
                .arg(state.turnCount);
    text += QStringLiteral(" hit by %1 for %2 heals %3 init %4/%5")
                .arg(state.lastHitBy)
                .arg(state.damageTaken)
                .arg(state.healCount)
                .arg(creature->initRoll())
                .arg(creature->initRandom());
    text += QStringLiteral(" alias %1/%2").arg(creature->alias()).arg(creature->aliasMode());
    if (details & TestFight::TurnMarks)
        text += QStringLiteral(" marks %1%2%3")
                    .arg(creature->isHidden())
                    .arg(creature->isDelayed())
                    .arg(creature->isReadied());
    if (details & TestFight::HitNumbers)
        text += QStringLiteral(" hit %1").arg(state.lastHitOrder);
    for (const Power &power : creature->powers())
        text += QStringLiteral(" %1=%2").arg(power.name).arg(power.usageState);
    for (const Effect *effect : creature->effects())
        text += QStringLiteral(" [%1 %2]").arg(effect->fullText()).arg(effect->endTurn());
    return text + u'\n';
}

} // namespace

QString TestFight::stateText(const QList<Creature *> &creatures, Details details)
{
    QString text = QStringLiteral("%1 (%2, %3): %4\n")
                       .arg(theEncounter->name())
                       .arg(theEncounter->level())
                       .arg(theEncounter->xp())
                       .arg(theEncounter->creatures().names());
    // A start that is taken back doesn't bring back the round of the encounter before.
    if (theEncounter->isRunning() && (details & TurnMarks)) {
        QStringList fallen;
        for (const Creature *creature : theEncounter->fallen())
            fallen << creature->displayName();
        fallen.sort();
        text += QStringLiteral("round %1, current %2, fallen %3\n")
                    .arg(theEncounter->round())
                    .arg(theEncounter->currentIndex())
                    .arg(fallen.join(u','));
    }
    for (Creature *creature : creatures)
        text += creatureText(creature, details);
    return text;
}
