// Hit points, surges, action points and rests. The rules that the DM decides aren't judged:
// resistance changes no damage, and nobody counts actions.
#include <algorithm>
#include <cstdlib>

#include "creature.h"
#include "encounter.h"
#include "outcome.h"
#include "saturated.h"

namespace {

// Numbers the hits of the whole run of the program, so that the last kill can be told.
int takeHitNumber()
{
    static int next = 0;
    return next++;
}

bool isEncounterRunning()
{
    return theEncounter && theEncounter->isRunning();
}

// Hit points at which a character dies at once.
int deathThreshold(int maxHP)
{
    return -(maxHP / 2);
}

} // namespace

bool Creature::isCurrent() const
{
    return theEncounter && theEncounter->current() == this;
}

bool Creature::isDead(bool ignoringRest) const
{
    if (!isMonster())
        return (currHP() < 1 && failedDeathSaves() > 2) || currHP() <= deathThreshold(maxHP());
    const int hp = saturatedDifference(currHP(), ignoringRest ? m_restHP : 0);
    return hp <= 0 && (maxHP() != 0 || hp != 0);
}

bool Creature::isDying() const
{
    return !isMonster() && currHP() < 1 && !isDead();
}

bool Creature::isBloodied() const
{
    return maxHP() >= 1 && currHP() <= bloodiedValue();
}

int Creature::bloodiedValue() const
{
    return maxHP() / 2;
}

bool Creature::hasBeenInCombat() const
{
    return currAP() != initAP() || currHP() != maxHP() || damageTaken() > 0 || healCount() > 0
        || currHS() != maxHS();
}

int Creature::hpPercent() const
{
    if (maxHP() == 0 || (currHP() < 0 && isMonster()))
        return 0;
    const qint64 magnitude = std::abs(qint64(currHP()));
    const qint64 percent = (magnitude * 100 + maxHP() - 1) / maxHP();
    const int bounded = int(std::clamp<qint64>(percent, 0, 100));
    return currHP() < 0 ? -bounded : bounded;
}

int Creature::playersHpPercent() const
{
    if (!isMonster())
        return hpPercent();
    const int hp = saturatedDifference(currHP(), m_restHP);
    if (maxHP() == 0 || hp < 1)
        return 0;
    if (hp <= maxHP() / 2)
        return 50;
    return hp < maxHP() ? 90 : 100;
}

void Creature::takeDamage(int amount, const Creature *attacker)
{
    const Health after = afterDamage(health(), amount);
    const int lost = saturatedDifference(currHP(), after.hp);
    m_state.tempHP = after.tempHP;
    m_state.currHP = after.hp;
    // Even when the temporary hit points took it all: any hit sets a stabilized creature dying.
    if (currHP() <= 0)
        m_state.stable = false;
    if (attacker) {
        m_state.lastHitBy = attacker->displayName();
        m_state.lastHitOrder = takeHitNumber();
    }
    m_state.damageTaken = saturatedSum(damageTaken(), lost);
    m_state.baseCurrHP = currHP();
    notifyUpdated();
}

void Creature::heal(int hp, int surgesUsed)
{
    m_state.healCount = saturatedSum(healCount(), 1);
    const Health after = afterHealing(health(), hp, surgesUsed);
    m_state.currHP = std::min(after.hp, maxHP());
    m_state.currHS = std::max(0, std::min(after.surges, maxHS()));
    if (currHP() > 0)
        m_state.stable = true;
    m_state.baseCurrHP = currHP();
    m_state.baseCurrHS = currHS();
    notifyUpdated();
}

void Creature::shortRest(int hp, int surgesUsed, bool addActionPoint)
{
    heal(hp, surgesUsed);
    if (!addActionPoint)
        return;
    m_state.currAP = saturatedSum(currAP(), 1);
    m_state.baseCurrAP = currAP();
    notifyUpdated();
}

// All but the record starts anew. The shadows of the current values go along: the log knows of the
// rest.
CreatureState Creature::restedState() const
{
    CreatureState state;
    state.currHP = state.baseCurrHP = maxHP();
    state.currHS = state.baseCurrHS = maxHS();
    state.currAP = state.baseCurrAP = initAP();
    state.apUsedInEncounter = 0;
    return state;
}

void Creature::extendedRest(bool clearEffects)
{
    m_state = restedState();
    if (clearEffects && !m_effects.isEmpty()) {
        m_effects.clear();
        Q_EMIT doCreatureEffectsChanged(this);
    }
    notifyUpdated();
}

void Creature::stopEncounter()
{
    // Stays dead, now that its failed saves are cleared.
    if (!isMonster() && isDead() && currHP() > deathThreshold(maxHP()))
        m_state.currHP = m_state.baseCurrHP = deathThreshold(maxHP());
    m_state.apUsedInEncounter = 0;
    m_state.tempHP = 0;
    m_state.failedDeathSaves = 0;
    m_state.secondWindUsed = 0;
    m_state.delayed = false;
    m_state.readied = false;
    m_state.stable = true;
    notifyUpdated();
}

void Creature::setTempHP(int amount)
{
    const Health after = afterTempHP(health(), amount);
    if (after.tempHP == tempHP())
        return;
    m_state.tempHP = after.tempHP;
    notifyUpdated();
}

void Creature::useActionPoint(int count)
{
    const int used = std::min(count, currAP());
    m_state.currAP = saturatedDifference(currAP(), used);
    if (isEncounterRunning())
        m_state.apUsedInEncounter = saturatedSum(apUsedInEncounter(), used);
    m_state.baseCurrAP = currAP();
    notifyUpdated();
}

void Creature::setFailedDeathSaves(int count)
{
    m_state.failedDeathSaves = count;
    notifyUpdated();
}

void Creature::setStable(bool stable)
{
    m_state.stable = stable;
    notifyUpdated();
}

void Creature::setSecondWindUsed(bool used)
{
    m_state.secondWindUsed = used ? 1 : 0;
    notifyUpdated();
}

// --- preview ---

void Creature::changeHP(int change)
{
    const bool wasUp = currHP() > 0;
    m_state.currHP = saturatedSum(currHP(), change);
    const bool isUp = currHP() > 0;
    if (wasUp != isUp)
        m_state.stable = isUp;
}

void Creature::setRestAdditions(int hp, int tempHP, int surges)
{
    if (hp == m_restHP && tempHP == m_restTempHP && surges == m_restHS)
        return;
    if (hp != m_restHP) {
        changeHP(saturatedDifference(0, m_restHP));
        changeHP(hp);
        m_restHP = hp;
    }
    m_state.tempHP = saturated(qint64(m_state.tempHP) - m_restTempHP + tempHP);
    m_restTempHP = tempHP;
    m_state.currHS = saturated(qint64(currHS()) - m_restHS + surges);
    m_restHS = surges;
    notifyUpdated();
}

void Creature::replaceRestAP(int points)
{
    m_state.currAP = saturated(qint64(currAP()) - m_restAP + points);
    // The sum of both is what the creature has had in this encounter.
    if (isEncounterRunning())
        m_state.apUsedInEncounter = saturated(qint64(apUsedInEncounter()) + m_restAP - points);
    m_restAP = points;
}

void Creature::setRestAP(int points)
{
    if (points == m_restAP)
        return;
    replaceRestAP(points);
    notifyUpdated();
}

void Creature::clearRestAdditions()
{
    if (m_restHP == 0 && m_restTempHP == 0 && m_restHS == 0 && m_restAP == 0)
        return;
    changeHP(saturatedDifference(0, m_restHP));
    m_state.tempHP = saturatedDifference(tempHP(), m_restTempHP);
    m_state.currHS = saturatedDifference(currHS(), m_restHS);
    replaceRestAP(0);
    m_restHP = 0;
    m_restTempHP = 0;
    m_restHS = 0;
    notifyUpdated();
}

// --- vitality ---

CreatureVitality Creature::liveVitality()
{
    return {.creature = this,
            .initBonus = initBonus(),
            .maxHP = maxHP(),
            .currHP = saturatedDifference(currHP(), m_restHP),
            .maxHS = maxHS(),
            .currHS = saturatedDifference(currHS(), m_restHS),
            .hsValue = hsValue(),
            .initAP = initAP(),
            .currAP = saturatedDifference(currAP(), m_restAP)};
}

CreatureVitality Creature::shadowVitality()
{
    return {.creature = this,
            .initBonus = m_baseInitBonus,
            .maxHP = m_baseMaxHP,
            .currHP = m_state.baseCurrHP,
            .maxHS = m_baseMaxHS,
            .currHS = m_state.baseCurrHS,
            .hsValue = m_baseHsValue,
            .initAP = m_baseInitAP,
            .currAP = m_state.baseCurrAP};
}

void Creature::setVitality(const CreatureVitality &vitality)
{
    const bool isTextStale = initBonus() != vitality.initBonus || maxHP() != vitality.maxHP
        || maxHS() != vitality.maxHS || hsValue() != vitality.hsValue
        || initAP() != vitality.initAP;
    setVitalityNumbers(vitality);
    // A text that still tells the same stays as its author laid it out.
    if (isTextStale)
        writeHistoryIntoText();
    statBlockChanged();
    notifyUpdated();
}

void Creature::setVitalityNumbers(const CreatureVitality &vitality)
{
    m_data.initBonus = vitality.initBonus;
    m_data.maxHP = vitality.maxHP;
    m_state.currHP = saturatedSum(vitality.currHP, m_restHP);
    m_data.maxHS = vitality.maxHS;
    m_state.currHS = saturatedSum(vitality.currHS, m_restHS);
    m_data.hsValue = vitality.hsValue;
    m_data.initAP = vitality.initAP;
    m_state.currAP = saturatedSum(vitality.currAP, m_restAP);
    notifyUpdated();
}

void Creature::setShadowVitality(const CreatureVitality &vitality)
{
    m_baseInitBonus = vitality.initBonus;
    m_baseMaxHP = vitality.maxHP;
    m_state.baseCurrHP = vitality.currHP;
    m_baseMaxHS = vitality.maxHS;
    m_state.baseCurrHS = vitality.currHS;
    m_baseHsValue = vitality.hsValue;
    m_baseInitAP = vitality.initAP;
    m_state.baseCurrAP = vitality.currAP;
}
