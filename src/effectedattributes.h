// Which of a creature's values an effect changes, and by how much all its effects change them.
#pragma once

#include <QtGlobal>

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

// What the members of both stand for.
struct AttributeKind {
    bool EffectedAttributes::*isAffected;
    int AttributeModifiers::*modifier;
    const char *name; // in the context "Effect"
    const char *shortName; // among others
};

// In the order of the bits and of the form.
inline constexpr AttributeKind attributeKinds[] = {
    {&EffectedAttributes::ac, &AttributeModifiers::ac, QT_TRANSLATE_NOOP("Effect", "AC"),
     QT_TRANSLATE_NOOP("Effect", "AC")},
    {&EffectedAttributes::fortitude, &AttributeModifiers::fortitude,
     QT_TRANSLATE_NOOP("Effect", "Fortitude"), QT_TRANSLATE_NOOP("Effect", "Fort")},
    {&EffectedAttributes::reflex, &AttributeModifiers::reflex,
     QT_TRANSLATE_NOOP("Effect", "Reflex"), QT_TRANSLATE_NOOP("Effect", "Reflex")},
    {&EffectedAttributes::will, &AttributeModifiers::will, QT_TRANSLATE_NOOP("Effect", "Will"),
     QT_TRANSLATE_NOOP("Effect", "Will")},
    {&EffectedAttributes::hit, &AttributeModifiers::hit, QT_TRANSLATE_NOOP("Effect", "Hit"),
     QT_TRANSLATE_NOOP("Effect", "Hit")},
    {&EffectedAttributes::damage, &AttributeModifiers::damage,
     QT_TRANSLATE_NOOP("Effect", "Damage"), QT_TRANSLATE_NOOP("Effect", "Damage")},
    {&EffectedAttributes::savingThrows, &AttributeModifiers::savingThrows,
     QT_TRANSLATE_NOOP("Effect", "Saving Throws"), QT_TRANSLATE_NOOP("Effect", "Saving Throws")},
};
