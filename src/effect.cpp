#include "effect.h"

#include <QStringList>

#include "saturated.h"
#include "terms.h"

namespace {

QString attributeNames(const EffectedAttributes &attributes)
{
    QStringList names;
    QString longName;
    for (const AttributeKind &kind : attributeKinds) {
        if (attributes.*kind.isAffected) {
            names << Effect::tr(kind.shortName);
            longName = Effect::tr(kind.name);
        }
    }
    // The short form is for lists: there is room for the word when it stands alone.
    if (names.size() == 1)
        return longName;
    if (attributes.ac && attributes.fortitude && attributes.reflex && attributes.will)
        names = QStringList(Effect::tr("all Defenses")) + names.mid(4);
    if (attributes.hit && attributes.damage) {
        const qsizetype hit = names.size() - (attributes.savingThrows ? 3 : 2);
        names[hit] = Effect::tr("Hit & Damage");
        names.removeAt(hit + 1);
    }
    return names.join(QLatin1String(", "));
}

// Empty for a type that is told by its text alone.
QString kindName(const Creature *origin, int type, int amount, const EffectedAttributes &attributes)
{
    const EffectKind &kind = effectKind(type);
    if (type == EffectType::Marked && origin)
        return Effect::tr("%1 by %2").arg(kind.text(), origin->displayName());
    const QString changed = kind.nameWithAttributes ? attributeNames(attributes) : QString();
    if (!changed.isEmpty())
        return Effect::tr(kind.nameWithAttributes).arg(QString::number(amount), changed);
    const QString name = kind.text();
    return name.contains(QLatin1String("%1")) ? name.arg(amount) : name;
}

void add(AttributeModifiers &modifiers, const EffectedAttributes &attributes, int amount)
{
    for (const AttributeKind &kind : attributeKinds) {
        if (attributes.*kind.isAffected)
            modifiers.*kind.modifier = saturatedSum(modifiers.*kind.modifier, amount);
    }
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
    return conditionText() + durationText();
}

QString Effect::conditionText() const
{
    return describe(m_origin, m_type, m_text, m_amount, m_attributes);
}

QString Effect::durationText() const
{
    const EffectDuration *duration = effectDuration(m_endCode);
    if (!duration)
        return QString();
    const QString text = tr(duration->behindName);
    if (!duration->originChoice)
        return text;
    return text.arg(m_origin ? m_origin->displayName() : QString());
}

bool Effect::isBeneficial() const
{
    return effectKind(m_type).isGood;
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
        // Only a second wind of its own shields a creature; one that another creature gave just
        // heals.
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
    return effectKind(type).showsOrigin;
}

QString Effect::describe(const Creature *origin, int type, const QString &text, int amount,
                         const EffectedAttributes &attributes)
{
    const QString name = kindName(origin, type, amount, attributes);
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
