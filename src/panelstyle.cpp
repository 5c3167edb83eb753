#include "panelstyle.h"

#include <array>

#include "creature.h"

namespace {

using namespace PanelRowStyle;

constexpr int SlotCount = 10;
using Palette = std::array<const char *, SlotCount>;

constexpr Palette Grey = {
    " { background-color: #333333; color: #ffffff",
    " { background-color: #cccccc; color: #000000",
    " { background-color: #e6e6e6; color: #000000",
    " { background-color: #333333; color: #ffffff; font-variant: small-caps; font-size: 13px",
    " { background-color: #cccccc; color: #000000",
    " { background-color: #cccccc; color: #7f7f7f",
    " { background-color: #e6e6e6; color: #002e76",
    " { background-color: #e6e6e6; color: #626262",
    " { background-color: #cccccc; color: #000000",
    " { background-color: #e6e6e6; color: #002e76",
};
// Used and unused powers look alike: only the tick tells a character's powers apart.
constexpr Palette Blue = {
    " { background-color: #00157f; color: #ffffff",
    " { background-color: #cccccc; color: #000000",
    " { background-color: #e6e6e6; color: #000000",
    " { background-color: #00157f; color: #ffffff; font-variant: small-caps; font-size: 13px",
    " { background-color: #cccccc; color: #000000",
    " { background-color: #cccccc; color: #000000",
    " { background-color: #e6e6e6; color: #002e76",
    " { background-color: #e6e6e6; color: #002e76",
    " { background-color: #cccccc; color: #000000",
    " { background-color: #e6e6e6; color: #002e76",
};
constexpr Palette Brown = {
    " { background-color: #39291b; color: #ffffff",
    " { background-color: #c8ad9d; color: #000000",
    " { background-color: #eedccd; color: #000000",
    " { background-color: #39291b; color: #ffffff; font-variant: small-caps; font-size: 13px",
    " { background-color: #c8ad9d; color: #000000",
    " { background-color: #c8ad9d; color: #7f7f7f",
    " { background-color: #eedccd; color: #052f09",
    " { background-color: #eedccd; color: #626262",
    " { background-color: #c8ad9d; color: #000000",
    " { background-color: #eedccd; color: #052f09",
};

const Palette &paletteOf(const Creature *creature)
{
    if (!creature->isMonster())
        return Blue;
    return creature->isDisabled() ? Brown : Grey;
}

const char *fragment(int flags, const Palette &palette)
{
    const bool used = flags & Used;
    const bool hovered = flags & Hovered;
    switch (flags & KindMask) {
    case Name:
    case Type:
        return palette[0];
    case Vital:
        return palette[1];
    case Condition:
        return palette[2];
    case Heading:
        return palette[3];
    case PowerHead:
        // Under the mouse it looks as after a click.
        return palette[used == hovered ? 4 : 5];
    case PowerText:
    case PowerListed:
        return palette[used ? 7 : 6];
    case Closing:
        return palette[8];
    case Tail:
        return palette[9];
    case Trailer:
        return " { color: #a8a8a8";
    default:
        return " { ";
    }
}

} // namespace

QString styleFor(int flags, const Creature *creature)
{
    const int side = (flags & KindMask) == PowerText ? 25 : 10;
    return QStringLiteral("QFrame%1; padding-left: %2px; padding-right: %2px; padding-top: %3px; "
                          "padding-bottom: %4px }")
        .arg(QLatin1String(fragment(flags, paletteOf(creature))), QString::number(side),
             QString::number(flags & TopPadding ? 3 : 0),
             QString::number(flags & BottomPadding ? 3 : 0));
}
