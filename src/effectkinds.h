// The kinds of conditions and effects and the ways in which they end: what the form offers and what
// lists and panels say of them, in one table each.
#pragma once

#include <QList>
#include <QString>
#include <span>

namespace EffectType {
enum Code {
    None = 0,
    Blinded = 1,
    Dazed,
    Deafened,
    Dominated,
    Grabbed,
    Helpless,
    Hidden,
    Immobilized,
    Marked,
    Petrified,
    Prone,
    Restrained,
    Slowed,
    Stunned,
    Surprised,
    Unconscious,
    Weakened,
    TotalDefence,
    SecondWind,
    OngoingDamage,
    Regeneration,
    Penalty,
    Bonus,
    PartialCover,
    SuperiorCover,
    Concealment,
    TotalConcealment,
    Resist,
    Vulnerable,
    OtherGood,
    OtherBad,
    Insubstantial,
    Phasing,
    End // behind the last; the log keeps the numbers, so that new ones stand in front of it
};
}

namespace EffectEnd {
enum Code {
    Special = 0,
    EndOfOriginsTurn,
    EndOfTargetsTurn,
    SaveEnds,
    EndOfEncounter,
    StartOfOriginsTurn,
    StartOfTargetsTurn
};
}

struct EffectKind {
    EffectType::Code type;
    // Null for one that is named by a term of the rules or by its text alone. %1 is the amount.
    const char *name = nullptr;
    int term = -1; // Term::Index
    bool isGood = false;
    bool showsOrigin = true;
    // With the attributes that it changes as %2.
    const char *nameWithAttributes = nullptr;
    // The form's words, with the amount as %1 and for any amount, where they aren't the name.
    const char *choice = nullptr;
    const char *plainChoice = nullptr;

    // Empty for one that is told by its text alone.
    QString text() const;
};

// Of EffectType::None for a number that isn't in the table.
const EffectKind &effectKind(int type);
// What the form offers as conditions, in its order.
std::span<const EffectKind> conditionKinds();

// Two types that differ by the sign of an amount.
struct EffectPair {
    EffectType::Code good;
    EffectType::Code bad;
};
inline constexpr EffectPair ongoingPair {EffectType::Regeneration, EffectType::OngoingDamage};
inline constexpr EffectPair modifierPair {EffectType::Bonus, EffectType::Penalty};
inline constexpr EffectPair resistPair {EffectType::Resist, EffectType::Vulnerable};

struct EffectDuration {
    EffectEnd::Code end;
    const char *behindName; // %1 is the origin's name
    const char *choice;
    const char *originChoice = nullptr; // where the origin, %1, decides
};

// In the order of the form.
std::span<const EffectDuration> effectDurations();
// Null for a number that isn't in the table.
const EffectDuration *effectDuration(int end);
