// One power of a stat block, and how often it has been used.
#pragma once

#include <QString>
#include <QStringList>

// Where a power stands in a stat block. The first three are the phases of a trap's opening text.
namespace PowerSection {
enum Code : int {
    None,
    TrapOpening,
    TrapWarning,
    TrapSkills,
    Traits,
    Standard,
    Move,
    Minor,
    Free,
    Triggered,
    Countermeasures,
    Other,
};
}

// The symbol in front of a power's name. Each basic attack stands before the other of its kind.
namespace PowerIcon {
enum Code : int {
    None,
    Weapon,
    RangedWeapon,
    BasicMelee,
    Melee,
    BasicRanged,
    Ranged,
    BasicArea,
    Area,
    BasicClose,
    Close,
    Aura,
    Trap,
    Secondary, // an attack that belongs to the power before
    Text, // no power: a paragraph of the stat block
};
}

struct Power {
    int icon = PowerIcon::None;
    int section = PowerSection::None;
    // How a used power comes back at the start of its owner's turn: 1 by itself, 3 by itself after
    // the first use only, 5 to 9 by a six-sided die of at least usageKind - 3, others never.
    int usageKind = 0;
    QString name; // HTML, and what the log knows the power by
    QString keywords; // HTML of what follows the name
    bool flavour = false; // the first paragraph describes the power before its rules begin
    QStringList details; // HTML, a paragraph each
    // 0 unused, 1 used, 2 recharged after one use, 3 used after a recharge, 4 recharged after that.
    int usageState = 0;

    bool isUsed() const { return usageState == 1 || usageState == 3; }
    // Moves to the next state of the kind asked for; marking a used power used does nothing.
    void setUsed(bool used);
    // Least die that brings the power back, for the recharge kinds.
    int rechargeLimit() const { return usageKind - 3; }

    bool operator==(const Power &) const = default;
};
