// What the readers of stat blocks and of XML share about powers: where a power goes in a creature's
// list, and the HTML of its header.
#pragma once

#include <QString>

#include "creaturedata.h"

// Puts a power that was read behind those of the record. What stands in a trap's opening text goes
// into unplacedText instead, and a secondary attack without keywords into the details of the power
// added last. When all are read, sortPowers() has to follow.
void addPower(CreatureData &record, Power power);

// Sorts the powers by section, in source order within one, and notes where the one added last came
// to stand. Once for all of them: an insertion in place would move those behind it each time.
void sortPowers(CreatureData &record);

// The line above a power's details. A power that is used is struck through if it can be spent at
// all; `crossedOut` asks for the opposite, to show what a change of its use would look like.
QString powerHeaderHtml(const Power &power, bool crossedOut);

// An image tag after a blank for each face of a die from n to 6 that recharges the power. There is
// no picture of a 1, since a power never needs one. Empty for an n outside 1 to 6.
QString rechargeImages(int n);
