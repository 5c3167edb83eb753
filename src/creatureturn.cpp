// What the start and the end of a turn raise on the history: each step is an event of its own, so
// that it can be stepped back. Stands above both the effects and the events.
#include "coreobjects.h"
#include "creature.h"
#include "dice.h"
#include "effect.h"
#include "effectevents.h"
#include "encounter.h"
#include "history.h"
#include "turnevents.h"
#include "vitalityevents.h"
#include "windowinterface.h"

namespace {

// The stream for the next event, behind whatever was changed outside the history. Null without a
// log, and then nothing may happen.
ObjectStream *streamForEvent()
{
    ObjectStream *stream = theHistory && theEncounter ? theHistory->getStream() : nullptr;
    if (stream)
        theEncounter->checkVitality(theHistory);
    return stream;
}

// Has an event applied that takes the stream as its last argument.
template <typename EventClass, typename... Arguments>
void raise(Arguments... arguments)
{
    if (ObjectStream *stream = streamForEvent())
        theHistory->doEvent(new EventClass(arguments..., stream));
}

// The events raised on the way change the list, so that a copy is walked, without those effects
// that have left meanwhile.
template <typename Visit>
void forEachEffect(const Creature *creature, Visit visit)
{
    for (Effect *effect : QList<Effect *>(creature->effects())) {
        if (creature->indexOfEffect(effect) >= 0)
            visit(effect);
    }
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

// What the log keeps of a power that comes back: that it does, or one more than the die.
int usageOf(const Power &power)
{
    return isRecharged(power) ? Dice::roll(6) + 1 : 1;
}

} // namespace

void Effect::applyOngoingDamage(Creature *creature, Creature *attacker)
{
    if (m_type == EffectType::OngoingDamage)
        raise<OnGoingDamageEvent>(attacker, creature, m_amount);
}

void Effect::applyRegeneration(Creature *creature)
{
    if (m_type == EffectType::Regeneration)
        raise<RegenerationEvent>(creature, m_amount);
}

void Creature::applyOngoingDamage()
{
    forEachEffect(this,
                  [this](Effect *effect) { effect->applyOngoingDamage(this, effect->origin()); });
}

void Creature::applyRegeneration()
{
    forEachEffect(this, [this](Effect *effect) { effect->applyRegeneration(this); });
}

void Creature::removeEffectsAtStartOfTurn(Creature *current)
{
    forEachEffect(this, [this, current](Effect *effect) {
        if (effect->endsAtStartOfTurn(current))
            raise<RemoveAtStartOfTurnEvent>(this, effect);
    });
}

void Creature::removeEffectsAtEndOfTurn(Creature *current, bool favourableOnly)
{
    forEachEffect(this, [=, this](Effect *effect) {
        if (effect->endsAtEndOfTurn(current, favourableOnly))
            raise<RemoveAtEndOfTurnEvent>(this, effect);
    });
}

void Creature::removeEffectsAtEndOfEncounter()
{
    forEachEffect(this, [this](Effect *effect) {
        if (effect->endsAtEndOfEncounter())
            raise<RemoveAtEndOfEncounterEvent>(this, effect);
    });
}

void Creature::rechargePowers()
{
    for (int i = 0; i < m_data.powers.size(); ++i) {
        if (!mayComeBack(m_data.powers.at(i)))
            continue;
        ObjectStream *stream = streamForEvent();
        // Fetched only now: a change that was just logged may have replaced the list.
        Power *power = powerAt(i);
        if (stream && power)
            theHistory->doEvent(new PowerUsageChangedEvent(this, power, usageOf(*power), stream));
    }
}

void Creature::kill(bool keepTurn)
{
    if (!theEncounter || !isDead())
        return;
    const bool wasCurrent = theEncounter->current() == this;
    raise<DiedEvent>(this);
    if (theEncounter->count() > 0) {
        if (wasCurrent && !keepTurn)
            windows().advanceTurn();
    } else if (ObjectStream *stream = streamForEvent()) {
        theHistory->doEvent(new StopEncounterEvent(stream, false));
    }
}
