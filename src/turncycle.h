// The order of a turn: what its start and its end raise on the history. Each step is an event of
// its own, so that each can be stepped back by itself.
#pragma once

#include <QList>
#include <functional>
#include <optional>

class Creature;
class Effect;
struct CreatureInit;

// Asks which of `effects`, never empty, the creature saves against. The answer is null when the DM
// cancelled, which `canCancel` allows, or when the program ends meanwhile: the turn isn't over
// then.
using AskSaves = std::function<std::optional<QList<Effect *>>(
    Creature *creature, const QList<Effect *> &effects, bool canCancel)>;

// Runs over the one encounter and its history, and knows no window: who can be asked for saving
// throws is handed in. Where a function stops early, because the log can't be written or the saves
// were cancelled, what was raised so far stands.
class TurnCycle {
public:
    explicit TurnCycle(AskSaves askSaves) : m_askSaves(std::move(askSaves)) { }

    // The encounter begins with those rolls, and with the first creature that can act.
    void startEncounter(const QList<CreatureInit> &characters, const QList<CreatureInit> &monsters);
    // Each effect that ends with the encounter, and the end. False when the log can't be written.
    bool endEncounter();
    // The same, and the monsters leave.
    void stopEncounter();

    void nextTurn();
    // Nothing without a current creature, as for ready().
    void delay();
    void ready();
    // One that waits acts now: delayed, it takes its turn; readied, its action.
    void jumpIn(Creature *jumper);
    // Passes the turn on to the next creature that can act.
    void advanceTurn();
    // Takes creatures out of the encounter. The turn passes on first if the current creature is
    // among them and others stay; where nobody stays, the encounter ends. The program may have
    // ended over the saves.
    void removeCreatures(const QList<Creature *> &creatures);

    // Takes a dead creature out with an event, and ends the encounter when nobody is left. The turn
    // passes on if it was this creature's, unless `keepTurn` is set.
    void kill(Creature *creature, bool keepTurn);
    // All that are dead, from the end of the order.
    void removeDead(bool keepTurn);

private:
    bool endTurn(bool skipSaves, bool canCancel);
    bool askSavingThrows(Creature *creature, bool canCancel);
    bool passTurn();

    AskSaves m_askSaves;
};

// The steps, each for one creature. They raise events and change nothing by themselves.
void applyOngoingDamage(Creature *creature);
void applyRegeneration(Creature *creature);
// Of the creature's effects those that end with the start, or the end, of the turn of `current`.
void removeEffectsAtStartOfTurn(Creature *creature, Creature *current);
void removeEffectsAtEndOfTurn(Creature *creature, Creature *current, bool favourableOnly);
void removeEffectsAtEndOfEncounter(Creature *creature);
// Rolls for each used power that may come back at the start of the creature's turn.
void rechargePowers(Creature *creature);
