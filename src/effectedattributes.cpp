#include "effectedattributes.h"

#include <array>

namespace {

// In the order of the bits.
constexpr std::array Attributes {
    &EffectedAttributes::ac,           &EffectedAttributes::fortitude, &EffectedAttributes::reflex,
    &EffectedAttributes::will,         &EffectedAttributes::hit,       &EffectedAttributes::damage,
    &EffectedAttributes::savingThrows,
};

} // namespace

EffectedAttributes EffectedAttributes::fromFlags(unsigned int flags)
{
    EffectedAttributes result;
    unsigned int bit = 1;
    for (const auto attribute : Attributes) {
        result.*attribute = (flags & bit) != 0;
        bit <<= 1;
    }
    result.unknownBits = flags & ~(bit - 1);
    return result;
}

unsigned int EffectedAttributes::flags() const
{
    unsigned int result = unknownBits;
    unsigned int bit = 1;
    for (const auto attribute : Attributes) {
        if (this->*attribute)
            result |= bit;
        bit <<= 1;
    }
    return result;
}
