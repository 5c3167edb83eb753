#include "vitalityevents.h"

#include "creature.h"
#include "effect.h"
#include "encounter.h"
#include "terms.h"
#include "windowinterface.h"

namespace {

int surgeValue(const Creature *creature)
{
    return creature ? creature->hsValue() : 0;
}

} // namespace

QList<Creature *> livingCharacters()
{
    QList<Creature *> result;
    for (Creature *creature : theEncounter->creatures()) {
        if (isCharacter(creature) && !creature->isDead())
            result << creature;
    }
    return result;
}

// --- DamageEvent and its subclass ---

DamageEvent::DamageEvent(Creature *source, Creature *target, int damage, const EventRecord &record)
    : DamageEvent(source, QList<Creature *> {target}, damage, record)
{
}

DamageEvent::DamageEvent(Creature *source, const QList<Creature *> &targets, int damage,
                         const EventRecord &record)
    : DamageEvent(EventType::Damage, source, targets, damage, record)
{
}

DamageEvent::DamageEvent(EventType::Code type, Creature *source, QList<Creature *> targets,
                         int damage, const EventRecord &record)
    : ChangeStateEvent(type, record), m_damage(damage)
{
    record.field(source);
    record.field(targets);
    record.field(ID_DAMAGE_EVENT_DAMAGE, m_damage);
    close(record, ID_DAMAGE_EVENT_END);
    init(source, targets);
}

QString DamageEvent::text() const
{
    return sourcePrefix() + tr("Damaged %1: ").arg(m_damage) + targetNames();
}

void DamageEvent::redo()
{
    for (Creature *target : m_targets)
        target->takeDamage(m_damage, m_source);
}

OnGoingDamageEvent::OnGoingDamageEvent(Creature *source, Creature *target, int damage,
                                       const EventRecord &record)
    : OnGoingDamageEvent(source, QList<Creature *> {target}, damage, record)
{
}

OnGoingDamageEvent::OnGoingDamageEvent(Creature *source, const QList<Creature *> &targets,
                                       int damage, const EventRecord &record)
    : DamageEvent(EventType::OnGoingDamage, source, targets, damage, record)
{
}

QString OnGoingDamageEvent::text() const
{
    return tr("On Going Damage %1: ").arg(m_damage) + targetNames();
}

// --- HealEvent ---

HealEvent::HealEvent(Creature *source, Creature *target, int surges, int hp,
                     const EventRecord &record)
    : HealEvent(source, QList<Creature *> {target}, surges, hp, record)
{
}

HealEvent::HealEvent(Creature *source, const QList<Creature *> &targets, int surges, int hp,
                     const EventRecord &record)
    : HealEvent(EventType::Heal, source, targets, surges, hp, record)
{
}

HealEvent::HealEvent(EventType::Code type, Creature *source, QList<Creature *> targets, int surges,
                     int hp, const EventRecord &record)
    : ChangeStateEvent(type, record), m_surges(surges), m_hp(hp)
{
    record.field(source);
    record.field(targets);
    record.field(ID_HEAL_EVENT_US, m_surges);
    record.field(ID_HEAL_EVENT_HP, m_hp);
    close(record, ID_HEAL_EVENT_END);
    init(source, targets);
}

QString HealEvent::amountText() const
{
    if (m_surges == 0)
        return tr("Healed %1: ").arg(m_hp);
    if (m_hp == 0 && m_surges > 0)
        return tr("%1s -%2: ").arg(term(Term::HealingSurge), QString::number(m_surges));
    if (m_hp == 0)
        return tr("%1s +%2: ").arg(term(Term::HealingSurge), QString::number(-qint64(m_surges)));
    if (m_surges > 0)
        return tr("Healed %1 (-%2 HS): ").arg(m_hp).arg(m_surges);
    return tr("Healed %1 (+%2 HS): ").arg(m_hp).arg(-qint64(m_surges));
}

QString HealEvent::text() const
{
    return sourcePrefix() + amountText() + targetNames();
}

void HealEvent::redo()
{
    for (Creature *target : m_targets)
        target->heal(m_hp, m_surges);
}

// --- RegenerationEvent ---

RegenerationEvent::RegenerationEvent(Creature *target, int hp, const EventRecord &record)
    : HealEvent(EventType::Regeneration, nullptr, {target}, 0, hp, record)
{
}

QString RegenerationEvent::text() const
{
    return tr("Regeneration %1: ").arg(m_hp) + targetNames();
}

// --- AdministerFirstAidEvent ---

AdministerFirstAidEvent::AdministerFirstAidEvent(Creature *source, Creature *target,
                                                 const EventRecord &record)
    : HealEvent(EventType::AdministerFirstAid, source, {target}, 1, surgeValue(target), record)
{
}

QString AdministerFirstAidEvent::text() const
{
    return sourcePrefix() + tr("%1 (First Aid): ").arg(term(Term::SecondWind)) + targetNames();
}

void AdministerFirstAidEvent::redo()
{
    HealEvent::redo();
    for (Creature *target : m_targets)
        target->setSecondWindUsed(true);
}

// --- SecondWindEvent ---

SecondWindEvent::SecondWindEvent(Creature *creature, const EventRecord &record)
    : HealEvent(EventType::SecondWind, creature, {creature}, 1, surgeValue(creature), record)
{
    if (m_source && m_source == firstTarget())
        m_effect = std::make_unique<Effect>(m_source, m_source, EffectType::SecondWind,
                                            EffectEnd::StartOfTargetsTurn);
}

SecondWindEvent::~SecondWindEvent() = default;

QString SecondWindEvent::text() const
{
    return tr("%1: ").arg(term(Term::SecondWind)) + targetNames();
}

void SecondWindEvent::redo()
{
    HealEvent::redo();
    if (m_effect)
        firstTarget()->addEffect(m_effect.get());
    for (Creature *target : m_targets)
        target->setSecondWindUsed(true);
}

void SecondWindEvent::undo()
{
    if (m_effect)
        firstTarget()->removeEffect(m_effect.get());
    HealEvent::undo();
}

// --- GainHealingSurgeEvent ---

GainHealingSurgeEvent::GainHealingSurgeEvent(Creature *creature, const EventRecord &record)
    : HealEvent(EventType::GainHealingSurge, creature, {creature}, -1, 0, record)
{
}

QString GainHealingSurgeEvent::text() const
{
    return sourcePrefix() + tr("Gained %1: ").arg(term(Term::HealingSurge)) + targetNames();
}

// --- SetTempHPEvent ---

SetTempHPEvent::SetTempHPEvent(QList<Creature *> targets, int amount, const EventRecord &record)
    : ChangeStateEvent(EventType::SetTempHP, record), m_amount(amount)
{
    Creature *source = nullptr; // no log of this program names one
    record.field(source);
    record.field(targets);
    record.field(ID_SET_THP_RESOURCE_AMOUNT, m_amount);
    close(record, ID_SET_THP_RESOURCE_END);
    init(source, targets);
}

QString SetTempHPEvent::text() const
{
    return tr("Gained %1 %2: ").arg(term(Term::TemporaryHP), QString::number(m_amount))
        + targetNames();
}

void SetTempHPEvent::redo()
{
    const QList<Creature *> targets = m_targets.creatures();
    QList<CreatureState> states;
    for (Creature *target : targets) {
        states << target->state();
        target->setTempHP(m_amount);
    }
    m_targets = CreatureSnapshots(targets, states);
}

// --- UseActionPointEvent ---

UseActionPointEvent::UseActionPointEvent(Creature *creature, const EventRecord &record)
    : ChangeStateEvent(EventType::UseActionPoint, record)
{
    record.field(creature);
    close(record, ID_USE_AP_EVENT_END);
    init(nullptr, creature);
}

QString UseActionPointEvent::text() const
{
    return tr("Use %1: %2").arg(term(Term::ActionPoint), displayNameOf(firstTarget()));
}

void UseActionPointEvent::redo()
{
    for (Creature *target : m_targets)
        target->useActionPoint(1);
}

// --- UseSecondWindEvent ---

UseSecondWindEvent::UseSecondWindEvent(Creature *creature, int change, const EventRecord &record)
    : ChangeStateEvent(EventType::UseSecondWind, record), m_change(change)
{
    record.field(creature);
    record.field(ID_SECOND_WIND_EVENT_CHANGE, m_change);
    close(record, ID_EVENT_END);
    init(nullptr, creature);
}

QString UseSecondWindEvent::text() const
{
    if (m_change == -1)
        return tr("Use %1: %3").arg(term(Term::SecondWind), displayNameOf(firstTarget()));
    if (m_change == 1)
        return tr("Gain %1: %2").arg(term(Term::SecondWind), displayNameOf(firstTarget()));
    return QString();
}

void UseSecondWindEvent::redo()
{
    for (Creature *target : m_targets)
        target->setSecondWindUsed(m_change != 1);
}

// --- StabilizeEvent ---

StabilizeEvent::StabilizeEvent(Creature *source, Creature *target, const EventRecord &record)
    : ChangeStateEvent(EventType::Stabilize, record)
{
    record.field(source);
    record.field(target);
    close(record, ID_STABILIZE_EVENT_END);
    init(source, target);
}

QString StabilizeEvent::text() const
{
    return sourcePrefix() + tr("Stabilized: ") + displayNameOf(firstTarget());
}

void StabilizeEvent::redo()
{
    for (Creature *target : m_targets)
        target->setStable(true);
}

// --- FailedDeathSavingThrowEvent ---

FailedDeathSavingThrowEvent::FailedDeathSavingThrowEvent(Creature *creature,
                                                         const EventRecord &record)
    : ChangeStateEvent(EventType::FailedDeathSavingThrow, record)
{
    record.field(creature);
    close(record, ID_FAILED_DST_EVENT_END);
    init(nullptr, creature);
}

QString FailedDeathSavingThrowEvent::text() const
{
    return tr("Failed %1: %2").arg(term(Term::DeathSavingThrow), displayNameOf(firstTarget()));
}

void FailedDeathSavingThrowEvent::redo()
{
    // Counted from the snapshot, so that every redo gives the same number.
    if (Creature *target = firstTarget())
        target->setFailedDeathSaves(m_targets.states().first().failedDeathSaves + 1);
}

// --- ShortRestEvent ---

ShortRestEvent::ShortRestEvent(const QList<RestedCreature> &rested, const EventRecord &record)
    : ChangeStateEvent(EventType::ShortRest, record), m_rested(rested)
{
    record.field(m_rested);
    close(record, ID_SR_ACTION_EVENT_END);
    QList<Creature *> targets;
    for (const RestedCreature &each : std::as_const(m_rested))
        targets << each.creature;
    init(nullptr, targets);
}

QString ShortRestEvent::text() const
{
    return tr("%1: ").arg(term(Term::ShortRest)) + targetNames();
}

void ShortRestEvent::redo()
{
    for (const RestedCreature &each : std::as_const(m_rested)) {
        if (each.creature)
            each.creature->shortRest(each.addedHP, each.usedHS, each.addedAP != 0);
    }
}

// --- ExtendedRestEvent ---

ExtendedRestEvent::ExtendedRestEvent(QList<Creature *> creatures, const EventRecord &record)
    : ChangeStateEvent(EventType::ExtendedRest, record)
{
    if (record.has(ID_CREATURE_LIST_SIZE, !creatures.isEmpty()))
        record.field(creatures);
    else
        creatures = livingCharacters();
    close(record, ID_EXT_REST_EVENT_END);
    init(nullptr, creatures);
}

QString ExtendedRestEvent::text() const
{
    return tr("%1: ").arg(term(Term::ExtendedRest)) + targetNames();
}

void ExtendedRestEvent::redo()
{
    for (Creature *target : m_targets)
        target->extendedRest(false);
    windows().refreshCharacterList();
}

// --- SetVitalityEvent ---

SetVitalityEvent::SetVitalityEvent(const CreatureVitality &vitality, const EventRecord &record)
    : Event(EventType::SetVitality, record), m_newValues(vitality)
{
    record.field(m_newValues);
    close(record, ID_SET_VITALITY_EVENT_END);
    m_visible = isCharacter(m_newValues.creature);
    if (!m_newValues.creature)
        return;
    m_oldLive = m_newValues.creature->liveVitality();
    m_oldShadow = m_newValues.creature->shadowVitality();
}

QString SetVitalityEvent::text() const
{
    struct Line {
        int CreatureVitality::*value;
        QString form;
    };
    const Line lines[] = {
        {&CreatureVitality::initBonus, tr(" Init +%1;")},
        {&CreatureVitality::maxHP, tr(" Max HP %1;")},
        {&CreatureVitality::currHP, tr(" Curr HP %1;")},
        {&CreatureVitality::maxHS, tr(" MAX HS %1;")},
        {&CreatureVitality::currHS, tr(" Curr HS %1;")},
        {&CreatureVitality::hsValue, tr(" HS Value %1;")},
        {&CreatureVitality::initAP, tr(" Init AP %1;")},
        {&CreatureVitality::currAP, tr(" AP %1;")},
    };
    QString result = tr("Changed %1:").arg(displayNameOf(m_newValues.creature));
    for (const Line &line : lines) {
        const int value = m_newValues.*line.value;
        if (m_oldShadow.*line.value == value)
            continue;
        const bool noInitiative = line.value == &CreatureVitality::initBonus && value == NotStated;
        result += noInitiative ? tr(" Init -;") : line.form.arg(value);
    }
    // Takes off the last ";", or the ":" where nothing differs.
    result.chop(1);
    return result;
}

void SetVitalityEvent::redo()
{
    if (Creature *creature = m_newValues.creature) {
        setVitality(creature, m_newValues);
        creature->setShadowVitality(m_newValues);
    }
}

void SetVitalityEvent::undo()
{
    if (Creature *creature = m_newValues.creature) {
        setVitality(creature, m_oldLive);
        creature->setShadowVitality(m_oldShadow);
    }
}

#include "moc_vitalityevents.cpp"
