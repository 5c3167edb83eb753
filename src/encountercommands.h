// What a command does in more than one event, by the rules of the game.
#pragma once

#include <QList>

class Creature;
class CreatureList;

// The living characters of the encounter rest. Those that are linked read their files first, and
// what those bring is logged ahead of the rest. False when the log can't be written.
bool takeExtendedRest();
// A monster that fought before comes back as new: one rest for all that need it, the end of each
// effect, and each spent power. Nothing for those that are new, nor for characters. To be called
// right behind the event that brought them.
void makeFresh(const CreatureList &arrivals);
