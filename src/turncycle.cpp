#include "turncycle.h"

#include <memory>

#include "appendevent.h"
#include "creature.h"
#include "dice.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "rosterevents.h"
#include "turnevents.h"
#include "vitalityevents.h"

namespace {

// Walks a copy, because the events that are raised on the way change the list; effects that have
// left it by then are skipped.
template <typename Visit>
void forEachEffect(const Creature *creature, Visit visit)
{
    for (Effect *effect : QList<Effect *>(creature->effects())) {
        if (creature->indexOfEffect(effect) >= 0)
            visit(effect);
    }
}

// A copy: events that are raised on the way change the order itself.
QList<Creature *> everyone()
{
    return theEncounter->creatures().list();
}

// A dead creature and one without an initiative bonus are passed over.
bool canAct(const Creature *creature)
{
    return creature && !creature->isDead() && creature->takesTurns();
}

bool isRecharged(const Power &power)
{
    return power.usageKind >= 5 && power.usageKind <= 9;
}

bool mayComeBack(const Power &power)
{
    return power.isUsed()
        && (power.usageKind == 1 || (power.usageKind == 3 && power.usageState == 1)
            || isRecharged(power));
}

// The number that the log keeps for a power that may come back: 1, or the recharge die plus 1.
int usageOf(const Power &power)
{
    return isRecharged(power) ? Dice::roll(6) + 1 : 1;
}

void startTurn(Creature *creature)
{
    applyOngoingDamage(creature);
    applyRegeneration(creature);
    const QList<Creature *> creatures = everyone();
    for (Creature *other : creatures)
        removeEffectsAtStartOfTurn(other, creature);
    rechargePowers(creature);
}

} // namespace

// --- the steps ---

void applyOngoingDamage(Creature *creature)
{
    forEachEffect(creature, [creature](const Effect *effect) {
        if (effect->type() == EffectType::OngoingDamage)
            appendEvent<OnGoingDamageEvent>(effect->origin(), creature, effect->amount());
    });
}

void applyRegeneration(Creature *creature)
{
    forEachEffect(creature, [creature](const Effect *effect) {
        if (effect->type() == EffectType::Regeneration)
            appendEvent<RegenerationEvent>(creature, effect->amount());
    });
}

void removeEffectsAtStartOfTurn(Creature *creature, Creature *current)
{
    forEachEffect(creature, [creature, current](Effect *effect) {
        if (effect->endsAtStartOfTurn(current))
            appendEvent<RemoveAtStartOfTurnEvent>(creature, effect);
    });
}

void removeEffectsAtEndOfTurn(Creature *creature, Creature *current, bool favourableOnly)
{
    forEachEffect(creature, [creature, current, favourableOnly](Effect *effect) {
        if (effect->endsAtEndOfTurn(current, favourableOnly))
            appendEvent<RemoveAtEndOfTurnEvent>(creature, effect);
    });
}

void removeEffectsAtEndOfEncounter(Creature *creature)
{
    forEachEffect(creature, [creature](Effect *effect) {
        if (effect->endsAtEndOfEncounter())
            appendEvent<RemoveAtEndOfEncounterEvent>(creature, effect);
    });
}

void rechargePowers(Creature *creature)
{
    for (int i = 0; i < creature->powers().size(); ++i) {
        if (!mayComeBack(creature->powers().at(i)))
            continue;
        if (!streamForEvent())
            return;
        // Fetched only now: a change that was just logged may have replaced the list.
        if (Power *power = creature->powerAt(i))
            appendEvent<PowerUsageChangedEvent>(creature, power, usageOf(*power));
    }
}

// --- the encounter ---

void TurnCycle::startEncounter(const QList<CreatureInit> &characters,
                               const QList<CreatureInit> &monsters)
{
    if (!appendEvent<StartEncounterEvent>(characters, monsters))
        return;
    // Those who can't act are passed over, without what the start of a turn raises.
    const int count = theEncounter->count();
    for (int i = 0; i < count && !canAct(theEncounter->current()); ++i) {
        if (!appendEvent<NextTurnEvent>())
            return;
    }
}

bool TurnCycle::endEncounter()
{
    const QList<Creature *> creatures = everyone();
    for (Creature *creature : creatures)
        removeEffectsAtEndOfEncounter(creature);
    return appendEvent<StopEncounterEvent>();
}

void TurnCycle::stopEncounter()
{
    if (!endEncounter())
        return;
    const CreatureList monsters = theEncounter->monsters();
    if (!monsters.isEmpty())
        appendEvent<RemoveCreaturesEvent>(monsters.list());
}

// --- the turn ---

void TurnCycle::nextTurn()
{
    if (theHistory->getStream() && endTurn(false, true))
        advanceTurn();
}

// The delayer makes no saving throws, and only what helps its own side ends with this turn.
void TurnCycle::delay()
{
    Creature *current = theEncounter->current();
    if (!current || !appendEvent<DelayEvent>(current))
        return;
    endTurn(true, false);
    advanceTurn();
}

void TurnCycle::ready()
{
    Creature *current = theEncounter->current();
    if (!current || !appendEvent<ReadyEvent>(current))
        return;
    if (endTurn(false, false))
        advanceTurn();
}

void TurnCycle::jumpIn(Creature *jumper)
{
    if (!jumper->isDelayed())
        appendEvent<EndReadyEvent>(jumper);
    else if (endTurn(false, false))
        // The interrupted turn has ended. The jumper takes up its turn without what a start raises.
        appendEvent<JumpInEvent>(jumper);
}

// False when the saves were cancelled: nothing has happened then.
bool TurnCycle::endTurn(bool skipSaves, bool canCancel)
{
    Creature *current = theEncounter->current();
    if (!current)
        return true;
    if (!skipSaves && !askSavingThrows(current, canCancel))
        return false;
    const QList<Creature *> creatures = everyone();
    for (Creature *creature : creatures)
        removeEffectsAtEndOfTurn(creature, current, skipSaves);
    return true;
}

// The saves that are due at the end of the creature's turn, its death save included.
bool TurnCycle::askSavingThrows(Creature *creature, bool canCancel)
{
    if (!theHistory->getStream())
        return false;
    QList<Effect *> effects;
    for (Effect *effect : creature->effects())
        if (effect->needsSave(creature))
            effects << effect;
    std::unique_ptr<DyingEffect> dying;
    if (creature->isDying() && !creature->isStable()) {
        dying = std::make_unique<DyingEffect>(creature);
        effects << dying.get();
    }
    if (effects.isEmpty())
        return true;
    const std::optional<QList<Effect *>> saved = m_askSaves(creature, effects, canCancel);
    if (!saved)
        return false;
    for (Effect *effect : *saved)
        if (effect != dying.get() && !appendEvent<RemoveOnSaveEvent>(creature, effect))
            return false;
    return !dying || saved->contains(dying.get())
        || appendEvent<FailedDeathSavingThrowEvent>(creature);
}

void TurnCycle::advanceTurn()
{
    // At most once around the order, in case nobody can act.
    const int count = theEncounter->count();
    for (int i = 0; i < count; ++i) {
        if (!passTurn())
            return;
        Creature *current = theEncounter->current();
        if (current)
            startTurn(current);
        if (canAct(current) || !endTurn(false, true))
            return;
    }
}

// Makes the next creature the current one. False when nobody is there or the log failed.
bool TurnCycle::passTurn()
{
    if (!theHistory->getStream())
        return false;
    Creature *next = theEncounter->next();
    if (!next)
        return false;
    if (!next->isDelayed())
        return appendEvent<NextTurnEvent>();
    // A delay that runs out costs the creature its turn, which ends with its saves.
    return appendEvent<JumpInEvent>(next) && endTurn(false, false);
}

// --- who leaves ---

void TurnCycle::removeCreatures(const QList<Creature *> &creatures)
{
    if (creatures.isEmpty() || !theHistory->getStream())
        return;
    QList<Creature *> others = creatures;
    Creature *current = theEncounter->current();
    const bool removesAll = creatures.size() >= theEncounter->count();
    // Nobody is left to pass the turn to: the fight is over, also for those who leave.
    if (removesAll && theEncounter->isRunning() && !endEncounter())
        return;
    const bool passesTurn = !removesAll && others.removeOne(current);
    if (!others.isEmpty())
        appendEvent<RemoveCreaturesEvent>(others);
    if (!passesTurn)
        return;
    // The turn passes on first, and only then the creature leaves.
    advanceTurn();
    if (theHistory)
        appendEvent<RemoveCurrentEvent>(current);
}

void TurnCycle::kill(Creature *creature, bool keepTurn)
{
    if (!creature || !creature->isDead())
        return;
    const bool wasCurrent = theEncounter->current() == creature;
    appendEvent<DiedEvent>(creature);
    if (theEncounter->count() == 0)
        appendEvent<StopEncounterEvent>();
    else if (wasCurrent && !keepTurn)
        advanceTurn();
}

void TurnCycle::removeDead(bool keepTurn)
{
    for (int i = theEncounter->count() - 1; i >= 0; --i) {
        Creature *creature = theEncounter->at(i);
        if (creature && creature->isDead())
            kill(creature, keepTurn);
    }
}
