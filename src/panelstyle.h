// The colours of the rows of a creature panel.
#pragma once

#include <QString>

class Creature;

// A row's style as one integer: its kind in the low byte, and flags.
namespace PanelRowStyle {
enum Part {
    Name = 1,
    Type,
    Vital,
    Condition,
    Heading,
    PowerHead,
    PowerText, // indented
    PowerListed,
    Closing,
    Tail,
    Trailer,
    KindMask = 0xff,
    TopPadding = 0x100,
    BottomPadding = 0x200,
    BothPaddings = TopPadding | BottomPadding,
    Used = 0x400, // the power has been used
    Hovered = 0x800 // the mouse is over it
};
}

// The style sheet of a row. A character's rows are blue, a monster's grey, those of a trap or a
// hazard brown. A kind outside the table gives a rule with paddings alone.
QString styleFor(int flags, const Creature *creature);
