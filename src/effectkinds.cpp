#include "effectkinds.h"

#include <QCoreApplication>
#include <algorithm>

#include "terms.h"

namespace {

// In the order of the form. To be hidden counts as bad, although it helps the creature: the
// players' tables know it as a condition that somebody put on them.
constexpr EffectKind conditions[] = {
    {.type = EffectType::Blinded, .name = QT_TRANSLATE_NOOP("Effect", "Blinded")},
    {.type = EffectType::Concealment,
     .name = QT_TRANSLATE_NOOP("Effect", "Concealment"),
     .isGood = true,
     .showsOrigin = false},
    {.type = EffectType::Dazed, .name = QT_TRANSLATE_NOOP("Effect", "Dazed")},
    {.type = EffectType::Deafened, .name = QT_TRANSLATE_NOOP("Effect", "Deafened")},
    {.type = EffectType::Dominated, .name = QT_TRANSLATE_NOOP("Effect", "Dominated")},
    {.type = EffectType::Grabbed, .name = QT_TRANSLATE_NOOP("Effect", "Grabbed")},
    {.type = EffectType::Helpless, .name = QT_TRANSLATE_NOOP("Effect", "Helpless")},
    {.type = EffectType::Hidden, .name = QT_TRANSLATE_NOOP("Effect", "Hidden")},
    {.type = EffectType::Immobilized, .name = QT_TRANSLATE_NOOP("Effect", "Immobilized")},
    {.type = EffectType::Insubstantial,
     .name = QT_TRANSLATE_NOOP("Effect", "Insubstantial"),
     .isGood = true},
    {.type = EffectType::Marked, .term = Term::Marked},
    {.type = EffectType::PartialCover,
     .name = QT_TRANSLATE_NOOP("Effect", "Partial Cover"),
     .isGood = true,
     .showsOrigin = false},
    {.type = EffectType::Petrified, .name = QT_TRANSLATE_NOOP("Effect", "Petrified")},
    {.type = EffectType::Phasing, .name = QT_TRANSLATE_NOOP("Effect", "Phasing"), .isGood = true},
    {.type = EffectType::Prone, .name = QT_TRANSLATE_NOOP("Effect", "Prone")},
    {.type = EffectType::Restrained, .name = QT_TRANSLATE_NOOP("Effect", "Restrained")},
    {.type = EffectType::Slowed, .name = QT_TRANSLATE_NOOP("Effect", "Slowed")},
    {.type = EffectType::Stunned, .name = QT_TRANSLATE_NOOP("Effect", "Stunned")},
    {.type = EffectType::SuperiorCover,
     .name = QT_TRANSLATE_NOOP("Effect", "Superior Cover"),
     .isGood = true,
     .showsOrigin = false},
    {.type = EffectType::Surprised, .name = QT_TRANSLATE_NOOP("Effect", "Surprised")},
    {.type = EffectType::TotalConcealment,
     .name = QT_TRANSLATE_NOOP("Effect", "Total Concealment"),
     .isGood = true,
     .showsOrigin = false},
    {.type = EffectType::Unconscious, .name = QT_TRANSLATE_NOOP("Effect", "Unconscious")},
    {.type = EffectType::Weakened, .name = QT_TRANSLATE_NOOP("Effect", "Weakened")},
};

constexpr EffectKind otherKinds[] = {
    {.type = EffectType::None},
    {.type = EffectType::TotalDefence,
     .term = Term::TotalDefence,
     .isGood = true,
     .showsOrigin = false},
    {.type = EffectType::SecondWind, .term = Term::SecondWind, .isGood = true},
    {.type = EffectType::OngoingDamage,
     .name = QT_TRANSLATE_NOOP("Effect", "Ongoing %1 Damage"),
     .choice = QT_TRANSLATE_NOOP("Effect", "Ongoing Damage %1"),
     .plainChoice = QT_TRANSLATE_NOOP("Effect", "Ongoing Damage")},
    {.type = EffectType::Regeneration,
     .name = QT_TRANSLATE_NOOP("Effect", "Regeneration %1"),
     .isGood = true,
     .choice = QT_TRANSLATE_NOOP("Effect", "Regeneration %1"),
     .plainChoice = QT_TRANSLATE_NOOP("Effect", "Regeneration")},
    {.type = EffectType::Penalty,
     .name = QT_TRANSLATE_NOOP("Effect", "-%1 Penalty"),
     .nameWithAttributes = QT_TRANSLATE_NOOP("Effect", "-%1 to %2"),
     .choice = QT_TRANSLATE_NOOP("Effect", "-%1 Penalty"),
     .plainChoice = QT_TRANSLATE_NOOP("Effect", "Penalty")},
    {.type = EffectType::Bonus,
     .name = QT_TRANSLATE_NOOP("Effect", "+%1 Bonus"),
     .isGood = true,
     .nameWithAttributes = QT_TRANSLATE_NOOP("Effect", "+%1 to %2"),
     .choice = QT_TRANSLATE_NOOP("Effect", "+%1 Bonus"),
     .plainChoice = QT_TRANSLATE_NOOP("Effect", "Bonus")},
    {.type = EffectType::Resist,
     .name = QT_TRANSLATE_NOOP("Effect", "Resist %1"),
     .isGood = true,
     .choice = QT_TRANSLATE_NOOP("Effect", "Resistance %1"),
     .plainChoice = QT_TRANSLATE_NOOP("Effect", "Resistance")},
    {.type = EffectType::Vulnerable,
     .name = QT_TRANSLATE_NOOP("Effect", "Vulnerable %1"),
     .choice = QT_TRANSLATE_NOOP("Effect", "Vulnerability %1"),
     .plainChoice = QT_TRANSLATE_NOOP("Effect", "Vulnerability")},
    {.type = EffectType::OtherGood, .isGood = true},
    {.type = EffectType::OtherBad},
};

constexpr const EffectKind *findKind(int type)
{
    for (const EffectKind &kind : conditions) {
        if (kind.type == type)
            return &kind;
    }
    for (const EffectKind &kind : otherKinds) {
        if (kind.type == type)
            return &kind;
    }
    return nullptr;
}

constexpr bool hasEveryKindOnce()
{
    for (int type = EffectType::None; type < EffectType::End; ++type) {
        if (!findKind(type))
            return false;
    }
    return std::size(conditions) + std::size(otherKinds) == EffectType::End;
}
static_assert(hasEveryKindOnce());

// In the order of the form.
constexpr EffectDuration durations[] = {
    {EffectEnd::Special, QT_TRANSLATE_NOOP("Effect", " end special"),
     QT_TRANSLATE_NOOP("Effect", "End special")},
    {EffectEnd::EndOfOriginsTurn, QT_TRANSLATE_NOOP("Effect", " until end of %1's next turn"),
     QT_TRANSLATE_NOOP("Effect", "End of next turn"),
     QT_TRANSLATE_NOOP("Effect", "End of %1's next turn")},
    {EffectEnd::StartOfOriginsTurn, QT_TRANSLATE_NOOP("Effect", " until start of %1's next turn"),
     QT_TRANSLATE_NOOP("Effect", "Start of next turn"),
     QT_TRANSLATE_NOOP("Effect", "Start of %1's next turn")},
    {EffectEnd::SaveEnds, QT_TRANSLATE_NOOP("Effect", " until save ends"),
     QT_TRANSLATE_NOOP("Effect", "Save ends")},
    {EffectEnd::EndOfEncounter, QT_TRANSLATE_NOOP("Effect", " until end of encounter"),
     QT_TRANSLATE_NOOP("Effect", "End of encounter")},
    {EffectEnd::EndOfTargetsTurn, QT_TRANSLATE_NOOP("Effect", " until end of my next turn"),
     QT_TRANSLATE_NOOP("Effect", "End of target's next turn")},
    {EffectEnd::StartOfTargetsTurn, QT_TRANSLATE_NOOP("Effect", " until start of my next turn"),
     QT_TRANSLATE_NOOP("Effect", "Start of target's next turn")},
};
static_assert(std::size(durations) == EffectEnd::StartOfTargetsTurn + 1);

} // namespace

QString EffectKind::text() const
{
    if (term >= 0)
        return ::term(term);
    return name ? QCoreApplication::translate("Effect", name) : QString();
}

const EffectKind &effectKind(int type)
{
    const EffectKind *kind = findKind(type);
    return kind ? *kind : otherKinds[0];
}

std::span<const EffectKind> conditionKinds()
{
    return conditions;
}

std::span<const EffectDuration> effectDurations()
{
    return durations;
}

const EffectDuration *effectDuration(int end)
{
    const auto found = std::find_if(std::begin(durations), std::end(durations),
                                    [end](const EffectDuration &each) { return each.end == end; });
    return found == std::end(durations) ? nullptr : found;
}
