// Which of a creature's values an effect changes, and by how much all its effects change them.
#pragma once

struct EffectedAttributes {
    bool ac = false;
    bool fortitude = false;
    bool reflex = false;
    bool will = false;
    bool hit = false;
    bool damage = false;
    bool savingThrows = false;
    // Bits 7 and up of a log's bit set: no attribute, but written back as they were read.
    unsigned int unknownBits = 0;

    // Bits 0 to 6 in the order above.
    static EffectedAttributes fromFlags(unsigned int flags);
    unsigned int flags() const;
    bool operator==(const EffectedAttributes &) const = default;
};

struct AttributeModifiers {
    int ac = 0;
    int fortitude = 0;
    int reflex = 0;
    int will = 0;
    int hit = 0;
    int damage = 0;
    int savingThrows = 0;
};
