#include "effectedattributes.h"

EffectedAttributes EffectedAttributes::fromFlags(unsigned int flags)
{
    EffectedAttributes result;
    unsigned int bit = 1;
    for (const AttributeKind &kind : attributeKinds) {
        result.*kind.isAffected = (flags & bit) != 0;
        bit <<= 1;
    }
    result.unknownBits = flags & ~(bit - 1);
    return result;
}

unsigned int EffectedAttributes::flags() const
{
    unsigned int result = unknownBits;
    unsigned int bit = 1;
    for (const AttributeKind &kind : attributeKinds) {
        if (this->*kind.isAffected)
            result |= bit;
        bit <<= 1;
    }
    return result;
}
