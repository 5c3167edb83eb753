#include "effect.h"

#include <QStringList>
#include <iterator>

#include "saturated.h"
#include "terms.h"

namespace {

struct TypeRow {
    // Null for types that are named by a term of the rules or by their text alone.
    const char *name = nullptr;
    bool beneficial = false;
    bool showsOrigin = true;
};

// Indexed by EffectType::Code. To be hidden counts as bad, although it helps the creature: the
// players' tables know it as a condition that somebody put on them.
constexpr TypeRow Types[] = {
    {},
    {QT_TRANSLATE_NOOP("Effect", "Blinded")},
    {QT_TRANSLATE_NOOP("Effect", "Dazed")},
    {QT_TRANSLATE_NOOP("Effect", "Deafened")},
    {QT_TRANSLATE_NOOP("Effect", "Dominated")},
    {QT_TRANSLATE_NOOP("Effect", "Grabbed")},
    {QT_TRANSLATE_NOOP("Effect", "Helpless")},
    {QT_TRANSLATE_NOOP("Effect", "Hidden")},
    {QT_TRANSLATE_NOOP("Effect", "Immobilized")},
    {},
    {QT_TRANSLATE_NOOP("Effect", "Petrified")},
    {QT_TRANSLATE_NOOP("Effect", "Prone")},
    {QT_TRANSLATE_NOOP("Effect", "Restrained")},
    {QT_TRANSLATE_NOOP("Effect", "Slowed")},
    {QT_TRANSLATE_NOOP("Effect", "Stunned")},
    {QT_TRANSLATE_NOOP("Effect", "Surprised")},
    {QT_TRANSLATE_NOOP("Effect", "Unconscious")},
    {QT_TRANSLATE_NOOP("Effect", "Weakened")},
    {nullptr, true, false},
    {nullptr, true},
    {QT_TRANSLATE_NOOP("Effect", "Ongoing %1 Damage")},
    {QT_TRANSLATE_NOOP("Effect", "Regeneration %1"), true},
    {QT_TRANSLATE_NOOP("Effect", "-%1 Penalty")},
    {QT_TRANSLATE_NOOP("Effect", "+%1 Bonus"), true},
    {QT_TRANSLATE_NOOP("Effect", "Partial Cover"), true, false},
    {QT_TRANSLATE_NOOP("Effect", "Superior Cover"), true, false},
    {QT_TRANSLATE_NOOP("Effect", "Concealment"), true, false},
    {QT_TRANSLATE_NOOP("Effect", "Total Concealment"), true, false},
    {QT_TRANSLATE_NOOP("Effect", "Resist %1"), true},
    {QT_TRANSLATE_NOOP("Effect", "Vulnerable %1")},
    {nullptr, true},
    {},
    {QT_TRANSLATE_NOOP("Effect", "Insubstantial"), true},
    {QT_TRANSLATE_NOOP("Effect", "Phasing"), true},
};
static_assert(std::size(Types) == EffectType::Phasing + 1);

const TypeRow &typeRow(int type)
{
    return Types[type >= 0 && type < int(std::size(Types)) ? type : EffectType::None];
}

QString attributeNames(const EffectedAttributes &attributes)
{
    QStringList names;
    if (attributes.ac && attributes.fortitude && attributes.reflex && attributes.will) {
        names.append(Effect::tr("all Defenses"));
    } else {
        if (attributes.ac)
            names.append(Effect::tr("AC"));
        if (attributes.fortitude)
            names.append(Effect::tr("Fort"));
        if (attributes.reflex)
            names.append(Effect::tr("Reflex"));
        if (attributes.will)
            names.append(Effect::tr("Will"));
    }
    if (attributes.hit && attributes.damage)
        names.append(Effect::tr("Hit & Damage"));
    else if (attributes.hit)
        names.append(Effect::tr("Hit"));
    else if (attributes.damage)
        names.append(Effect::tr("Damage"));
    if (attributes.savingThrows)
        names.append(Effect::tr("Saving Throws"));
    // The short form is for lists: there is room for the word when it stands alone.
    if (names.size() == 1 && attributes.fortitude && !attributes.ac)
        return Effect::tr("Fortitude");
    return names.join(QLatin1String(", "));
}

// "+2 Bonus", or "+2 to AC, Hit" for one that changes numbers.
QString modifierName(int type, int amount, const EffectedAttributes &attributes)
{
    const QString names = attributeNames(attributes);
    if (names.isEmpty())
        return Effect::tr(typeRow(type).name).arg(amount);
    const QString form =
        type == EffectType::Penalty ? Effect::tr("-%1 to %2") : Effect::tr("+%1 to %2");
    return form.arg(QString::number(amount), names);
}

// Empty for a type that is told by its text alone.
QString typeName(const Creature *origin, int type, int amount, const EffectedAttributes &attributes)
{
    switch (type) {
    case EffectType::Marked:
        return origin ? Effect::tr("%1 by %2").arg(term(Term::Marked), origin->displayName())
                      : term(Term::Marked);
    case EffectType::TotalDefence:
        return term(Term::TotalDefence);
    case EffectType::SecondWind:
        return term(Term::SecondWind);
    case EffectType::Penalty:
    case EffectType::Bonus:
        return modifierName(type, amount, attributes);
    case EffectType::OngoingDamage:
    case EffectType::Regeneration:
    case EffectType::Resist:
    case EffectType::Vulnerable:
        return Effect::tr(typeRow(type).name).arg(amount);
    default:
        return typeRow(type).name ? Effect::tr(typeRow(type).name) : QString();
    }
}

void add(int &modifier, bool isAffected, int amount)
{
    if (isAffected)
        modifier = saturatedSum(modifier, amount);
}

void add(AttributeModifiers &modifiers, const EffectedAttributes &attributes, int amount)
{
    add(modifiers.ac, attributes.ac, amount);
    add(modifiers.fortitude, attributes.fortitude, amount);
    add(modifiers.reflex, attributes.reflex, amount);
    add(modifiers.will, attributes.will, amount);
    add(modifiers.hit, attributes.hit, amount);
    add(modifiers.damage, attributes.damage, amount);
    add(modifiers.savingThrows, attributes.savingThrows, amount);
}

constexpr EffectedAttributes AllDefences {
    .ac = true, .fortitude = true, .reflex = true, .will = true};
constexpr int DefensiveActionBonus = 2;

} // namespace

Effect::Effect(Creature *origin, Creature *target, int type, int endCode, const QString &text,
               int amount, const EffectedAttributes &attributes)
    : m_origin(origin), m_target(target), m_type(type), m_endCode(endCode), m_text(text),
      m_amount(amount), m_attributes(attributes)
{
    // An effect never ends within the turn in which it was set.
    const Creature *deciding = decidingCreature();
    if (deciding) {
        m_endTurn = saturatedSum(deciding->turnCount(), deciding->isCurrent() ? 1 : 0);
    }
}

Effect::~Effect()
{
    if (m_target && m_target->indexOfEffect(this) >= 0)
        m_target->removeEffect(this);
}

Creature *Effect::decidingCreature() const
{
    return m_endCode == EffectEnd::EndOfOriginsTurn ? m_origin : m_target;
}

QString Effect::fullText() const
{
    // Not by +, whose operands would have to outlive a temporary expression.
    return conditionText().append(durationText());
}

QString Effect::conditionText() const
{
    return describe(m_origin, m_type, m_text, m_amount, m_attributes);
}

QString Effect::durationText() const
{
    const QString originName = m_origin ? m_origin->displayName() : QString();
    switch (m_endCode) {
    case EffectEnd::Special:
        return tr(" end special");
    case EffectEnd::EndOfOriginsTurn:
        return tr(" until end of %1's next turn").arg(originName);
    case EffectEnd::EndOfTargetsTurn:
        return tr(" until end of my next turn");
    case EffectEnd::SaveEnds:
        return tr(" until save ends");
    case EffectEnd::EndOfEncounter:
        return tr(" until end of encounter");
    case EffectEnd::StartOfOriginsTurn:
        return tr(" until start of %1's next turn").arg(originName);
    case EffectEnd::StartOfTargetsTurn:
        return tr(" until start of my next turn");
    default:
        return QString();
    }
}

bool Effect::isBeneficial() const
{
    return typeRow(m_type).beneficial;
}

bool Effect::favours(const Creature *a, const Creature *b) const
{
    if (!a || !b)
        return isBeneficial();
    return (a->isMonster() == b->isMonster()) == isBeneficial();
}

bool Effect::endsAtEndOfTurn(const Creature *creature, bool favourableOnly) const
{
    if (m_endCode != EffectEnd::EndOfOriginsTurn && m_endCode != EffectEnd::EndOfTargetsTurn)
        return false;
    const Creature *deciding = decidingCreature();
    if (!deciding || deciding != creature || m_endTurn > deciding->turnCount())
        return false;
    return !favourableOnly || favours(m_target, creature);
}

bool Effect::endsAtStartOfTurn(const Creature *creature) const
{
    if (!creature)
        return false;
    return (m_endCode == EffectEnd::StartOfOriginsTurn && m_origin == creature)
        || (m_endCode == EffectEnd::StartOfTargetsTurn && m_target == creature);
}

bool Effect::needsSave(const Creature *creature) const
{
    return m_endCode == EffectEnd::SaveEnds && creature && m_target == creature
        && m_endTurn <= creature->turnCount();
}

bool Effect::endsAtEndOfEncounter() const
{
    return m_endCode != EffectEnd::Special;
}

void Effect::accumulate(AttributeModifiers &modifiers) const
{
    switch (m_type) {
    case EffectType::TotalDefence:
        add(modifiers, AllDefences, DefensiveActionBonus);
        break;
    case EffectType::SecondWind:
        // One's own: that which another creature gave heals, but shields nobody.
        if (!m_origin || m_origin == m_target)
            add(modifiers, AllDefences, DefensiveActionBonus);
        break;
    case EffectType::Penalty:
        add(modifiers, m_attributes, saturatedDifference(0, m_amount));
        break;
    case EffectType::Bonus:
        add(modifiers, m_attributes, m_amount);
        break;
    default:
        break;
    }
}

bool Effect::showsOrigin(int type)
{
    return typeRow(type).showsOrigin;
}

QString Effect::describe(const Creature *origin, int type, const QString &text, int amount,
                         const EffectedAttributes &attributes)
{
    const QString name = typeName(origin, type, amount, attributes);
    if (name.isEmpty())
        return text;
    return text.isEmpty() ? name : tr("%1 (%2)").arg(name, text);
}

DyingEffect::DyingEffect(Creature *target)
    : Effect(nullptr, target, EffectType::None, EffectEnd::Special)
{
}

QString DyingEffect::conditionText() const
{
    return term(Term::DeathSavingThrow);
}

#include "moc_effect.cpp"
