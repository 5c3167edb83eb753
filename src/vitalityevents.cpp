#include "vitalityevents.h"

#include "creature.h"
#include "effect.h"
#include "encounter.h"
#include "objectstream.h"
#include "streamrecords.h"
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

DamageEvent::DamageEvent(Creature *source, Creature *target, int damage, ObjectStream *stream)
    : DamageEvent(source, QList<Creature *> {target}, damage, stream)
{
}

DamageEvent::DamageEvent(Creature *source, const QList<Creature *> &targets, int damage,
                         ObjectStream *stream)
    : DamageEvent(EventType::Damage, source, targets, damage, stream)
{
}

DamageEvent::DamageEvent(ObjectStream *stream) : DamageEvent(EventType::Damage, stream) { }

DamageEvent::DamageEvent(EventType::Code type, Creature *source, const QList<Creature *> &targets,
                         int damage, ObjectStream *stream)
    : ChangeStateEvent(type), m_damage(damage)
{
    beginWriting(stream);
    writeCreature(stream, source);
    writeCreatureList(stream, targets);
    stream->writeInt(ID_DAMAGE_EVENT_DAMAGE, damage);
    endWriting(stream, ID_DAMAGE_EVENT_END);
    init(source, targets);
}

DamageEvent::DamageEvent(EventType::Code type, ObjectStream *stream) : ChangeStateEvent(type)
{
    Creature *source = readCreature(stream);
    const QList<Creature *> targets = readCreatureList(stream);
    m_damage = stream->readInt(ID_DAMAGE_EVENT_DAMAGE);
    endReading(stream, ID_DAMAGE_EVENT_END);
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
                                       ObjectStream *stream)
    : OnGoingDamageEvent(source, QList<Creature *> {target}, damage, stream)
{
}

OnGoingDamageEvent::OnGoingDamageEvent(Creature *source, const QList<Creature *> &targets,
                                       int damage, ObjectStream *stream)
    : DamageEvent(EventType::OnGoingDamage, source, targets, damage, stream)
{
}

OnGoingDamageEvent::OnGoingDamageEvent(ObjectStream *stream)
    : DamageEvent(EventType::OnGoingDamage, stream)
{
}

QString OnGoingDamageEvent::text() const
{
    return tr("On Going Damage %1: ").arg(m_damage) + targetNames();
}

// --- HealEvent ---

HealEvent::HealEvent(Creature *source, Creature *target, int surges, int hp, ObjectStream *stream)
    : HealEvent(source, QList<Creature *> {target}, surges, hp, stream)
{
}

HealEvent::HealEvent(Creature *source, const QList<Creature *> &targets, int surges, int hp,
                     ObjectStream *stream)
    : HealEvent(EventType::Heal, source, targets, surges, hp, stream)
{
}

HealEvent::HealEvent(ObjectStream *stream) : HealEvent(EventType::Heal, stream) { }

HealEvent::HealEvent(EventType::Code type, Creature *source, const QList<Creature *> &targets,
                     int surges, int hp, ObjectStream *stream)
    : ChangeStateEvent(type), m_surges(surges), m_hp(hp)
{
    beginWriting(stream);
    writeCreature(stream, source);
    writeCreatureList(stream, targets);
    stream->writeInt(ID_HEAL_EVENT_US, surges);
    stream->writeInt(ID_HEAL_EVENT_HP, hp);
    endWriting(stream, ID_HEAL_EVENT_END);
    init(source, targets);
}

HealEvent::HealEvent(EventType::Code type, ObjectStream *stream) : ChangeStateEvent(type)
{
    Creature *source = readCreature(stream);
    const QList<Creature *> targets = readCreatureList(stream);
    m_surges = stream->readInt(ID_HEAL_EVENT_US);
    m_hp = stream->readInt(ID_HEAL_EVENT_HP);
    endReading(stream, ID_HEAL_EVENT_END);
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

RegenerationEvent::RegenerationEvent(Creature *target, int hp, ObjectStream *stream)
    : HealEvent(EventType::Regeneration, nullptr, {target}, 0, hp, stream)
{
}

RegenerationEvent::RegenerationEvent(ObjectStream *stream)
    : HealEvent(EventType::Regeneration, stream)
{
}

QString RegenerationEvent::text() const
{
    return tr("Regeneration %1: ").arg(m_hp) + targetNames();
}

// --- AdministerFirstAidEvent ---

AdministerFirstAidEvent::AdministerFirstAidEvent(Creature *source, Creature *target,
                                                 ObjectStream *stream)
    : HealEvent(EventType::AdministerFirstAid, source, {target}, 1, surgeValue(target), stream)
{
}

AdministerFirstAidEvent::AdministerFirstAidEvent(ObjectStream *stream)
    : HealEvent(EventType::AdministerFirstAid, stream)
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

SecondWindEvent::SecondWindEvent(Creature *creature, ObjectStream *stream)
    : HealEvent(EventType::SecondWind, creature, {creature}, 1, surgeValue(creature), stream)
{
    makeEffect();
}

SecondWindEvent::SecondWindEvent(ObjectStream *stream) : HealEvent(EventType::SecondWind, stream)
{
    makeEffect();
}

SecondWindEvent::~SecondWindEvent() = default;

void SecondWindEvent::makeEffect()
{
    if (m_source && m_source == firstTarget())
        m_effect = std::make_unique<Effect>(m_source, m_source, EffectType::SecondWind,
                                            EffectEnd::StartOfTargetsTurn);
}

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

GainHealingSurgeEvent::GainHealingSurgeEvent(Creature *creature, ObjectStream *stream)
    : HealEvent(EventType::GainHealingSurge, creature, {creature}, -1, 0, stream)
{
}

GainHealingSurgeEvent::GainHealingSurgeEvent(ObjectStream *stream)
    : HealEvent(EventType::GainHealingSurge, stream)
{
}

QString GainHealingSurgeEvent::text() const
{
    return sourcePrefix() + tr("Gained %1: ").arg(term(Term::HealingSurge)) + targetNames();
}

// --- SetTempHPEvent ---

SetTempHPEvent::SetTempHPEvent(const QList<Creature *> &targets, int amount, ObjectStream *stream)
    : ChangeStateEvent(EventType::SetTempHP), m_amount(amount)
{
    beginWriting(stream);
    writeCreature(stream, nullptr);
    writeCreatureList(stream, targets);
    stream->writeInt(ID_SET_THP_RESOURCE_AMOUNT, amount);
    endWriting(stream, ID_SET_THP_RESOURCE_END);
    init(nullptr, targets);
}

SetTempHPEvent::SetTempHPEvent(ObjectStream *stream) : ChangeStateEvent(EventType::SetTempHP)
{
    Creature *source = readCreature(stream);
    const QList<Creature *> targets = readCreatureList(stream);
    m_amount = stream->readInt(ID_SET_THP_RESOURCE_AMOUNT);
    endReading(stream, ID_SET_THP_RESOURCE_END);
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

UseActionPointEvent::UseActionPointEvent(Creature *creature, ObjectStream *stream)
    : ChangeStateEvent(EventType::UseActionPoint)
{
    beginWriting(stream);
    writeCreature(stream, creature);
    endWriting(stream, ID_USE_AP_EVENT_END);
    init(nullptr, creature);
}

UseActionPointEvent::UseActionPointEvent(ObjectStream *stream)
    : ChangeStateEvent(EventType::UseActionPoint)
{
    Creature *creature = readCreature(stream);
    endReading(stream, ID_USE_AP_EVENT_END);
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

UseSecondWindEvent::UseSecondWindEvent(Creature *creature, int change, ObjectStream *stream)
    : ChangeStateEvent(EventType::UseSecondWind), m_change(change)
{
    beginWriting(stream);
    writeCreature(stream, creature);
    stream->writeInt(ID_SECOND_WIND_EVENT_CHANGE, change);
    endWriting(stream, ID_EVENT_END);
    init(nullptr, creature);
}

UseSecondWindEvent::UseSecondWindEvent(ObjectStream *stream)
    : ChangeStateEvent(EventType::UseSecondWind)
{
    Creature *creature = readCreature(stream);
    m_change = stream->readInt(ID_SECOND_WIND_EVENT_CHANGE);
    endReading(stream, ID_EVENT_END);
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

StabilizeEvent::StabilizeEvent(Creature *source, Creature *target, ObjectStream *stream)
    : ChangeStateEvent(EventType::Stabilize)
{
    beginWriting(stream);
    writeCreature(stream, source);
    writeCreature(stream, target);
    endWriting(stream, ID_STABILIZE_EVENT_END);
    init(source, target);
}

StabilizeEvent::StabilizeEvent(ObjectStream *stream) : ChangeStateEvent(EventType::Stabilize)
{
    Creature *source = readCreature(stream);
    Creature *target = readCreature(stream);
    endReading(stream, ID_STABILIZE_EVENT_END);
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

FailedDeathSavingThrowEvent::FailedDeathSavingThrowEvent(Creature *creature, ObjectStream *stream)
    : ChangeStateEvent(EventType::FailedDeathSavingThrow)
{
    beginWriting(stream);
    writeCreature(stream, creature);
    endWriting(stream, ID_FAILED_DST_EVENT_END);
    init(nullptr, creature);
}

FailedDeathSavingThrowEvent::FailedDeathSavingThrowEvent(ObjectStream *stream)
    : ChangeStateEvent(EventType::FailedDeathSavingThrow)
{
    Creature *creature = readCreature(stream);
    endReading(stream, ID_FAILED_DST_EVENT_END);
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

ShortRestEvent::ShortRestEvent(const QList<RestedCreature> &rested, ObjectStream *stream)
    : ChangeStateEvent(EventType::ShortRest)
{
    beginWriting(stream);
    writeRested(stream, rested);
    endWriting(stream, ID_SR_ACTION_EVENT_END);
    capture(rested);
}

ShortRestEvent::ShortRestEvent(ObjectStream *stream) : ChangeStateEvent(EventType::ShortRest)
{
    const QList<RestedCreature> rested = readRested(stream);
    endReading(stream, ID_SR_ACTION_EVENT_END);
    capture(rested);
}

void ShortRestEvent::capture(const QList<RestedCreature> &rested)
{
    m_rested = rested;
    QList<Creature *> targets;
    for (const RestedCreature &each : rested)
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

ExtendedRestEvent::ExtendedRestEvent(const QList<Creature *> &creatures, ObjectStream *stream)
    : ChangeStateEvent(EventType::ExtendedRest)
{
    beginWriting(stream);
    if (!creatures.isEmpty())
        writeCreatureList(stream, creatures);
    endWriting(stream, ID_EXT_REST_EVENT_END);
    init(nullptr, creatures.isEmpty() ? livingCharacters() : creatures);
}

ExtendedRestEvent::ExtendedRestEvent(ObjectStream *stream)
    : ChangeStateEvent(EventType::ExtendedRest)
{
    const bool hasList = stream->nextIs(ID_CREATURE_LIST_SIZE);
    const QList<Creature *> creatures = hasList ? readCreatureList(stream) : livingCharacters();
    endReading(stream, ID_EXT_REST_EVENT_END);
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

SetVitalityEvent::SetVitalityEvent(const CreatureVitality &vitality, ObjectStream *stream)
    : Event(EventType::SetVitality), m_newValues(vitality)
{
    beginWriting(stream);
    writeVitality(stream, vitality);
    endWriting(stream, ID_SET_VITALITY_EVENT_END);
    capture();
}

SetVitalityEvent::SetVitalityEvent(ObjectStream *stream)
    : Event(EventType::SetVitality), m_newValues(readVitality(stream))
{
    endReading(stream, ID_SET_VITALITY_EVENT_END);
    capture();
}

void SetVitalityEvent::capture()
{
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
    // The last ";", or the ":" where nothing differs.
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
