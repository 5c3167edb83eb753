// What the readers of stat blocks and of XML share about powers: where a power goes in a creature's
// list, and the HTML of its header.
#pragma once

#include <QString>

#include "creaturedata.h"

// Puts a power that was read into the record: sorted by section, in source order within one. What
// stands in a trap's opening text goes into unplacedText instead, and a secondary attack without
// keywords into the details of the power inserted last. A record that is full to absurdity takes no
// more.
void insertPower(CreatureData &record, Power power);

// The line above a power's details. A power that is used is struck through if it can be spent at
// all; `crossedOut` asks for the opposite, to show what a change of its use would look like.
QString powerHeaderHtml(const Power &power, bool crossedOut);

// An image tag after a blank for each face of a die from n to 6 that recharges the power. There is
// no picture of a 1, since a power never needs one. Empty for an n outside 1 to 6.
QString rechargeImages(int n);
