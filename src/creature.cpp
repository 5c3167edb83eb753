#include "creature.h"

#include <algorithm>

#include "effect.h"
#include "switchboard.h"
#include "text.h"

Creature::Creature(QObject *parent) : QObject(parent)
{
    connect(this, &Creature::doCreatureUpdated, switchBoard(), &SwitchBoard::doCreatureUpdated);
    connect(this, &Creature::doCreatureEffectsChanged, switchBoard(),
            &SwitchBoard::doCreatureEffectsChanged);
}

Creature::~Creature() = default;

// --- the record of the file ---

void Creature::assign(const CreatureData &data)
{
    const bool hasNewName = data.name != m_data.name || data.group != m_data.group;
    m_data = data;
    m_ownText.clear();
    if (hasNewName)
        m_flags.noteNameChange();
    upperFirst(m_data.senses);
    notifyUpdated();
}

void Creature::copyFrom(const Creature *other)
{
    if (other)
        assign(other->data());
}

Power *Creature::powerAt(int index)
{
    return index >= 0 && index < m_data.powers.size() ? &m_data.powers[index] : nullptr;
}

Power *Creature::powerByName(const QString &name)
{
    const auto found = std::find_if(m_data.powers.cbegin(), m_data.powers.cend(),
                                    [&name](const Power &power) { return power.name == name; });
    return powerAt(found == m_data.powers.cend() ? -1 : int(found - m_data.powers.cbegin()));
}

void Creature::setMissing(bool missing)
{
    m_data.missing = missing;
    notifyUpdated();
}

void Creature::setName(const QString &name)
{
    m_data.name = name;
    m_flags.noteNameChange();
    if (!m_ownText.isNull())
        writeHistoryIntoText();
    notifyUpdated();
}

void Creature::rename(const QString &name)
{
    m_data.name = name;
    m_flags.noteNameChange();
    noteFieldChange();
}

void Creature::setAbilityScore(Ability CreatureData::*ability, int score)
{
    m_data.*ability = {score, NoModifier};
    noteFieldChange();
}

void Creature::noteFieldChange()
{
    updateText();
    statBlockChanged();
    notifyUpdated();
}

void Creature::setGroup(const QString &group)
{
    m_data.group = group;
    m_flags.noteNameChange();
    notifyUpdated();
}

void Creature::setStatBlock(const QString &text)
{
    m_data.statBlock = text;
    m_ownText.clear();
    statBlockChanged();
    notifyUpdated();
}

void Creature::statBlockChanged()
{
    if (!isNew())
        setModified(m_data.statBlock != m_savedStatBlock);
    Q_EMIT switchBoard()->doRecordChanged();
}

// A character's text is written from its fields. A monster's fields are read from its text, which
// stays as it was pasted.
void Creature::updateText()
{
    if (isMonster())
        return;
    m_data.statBlock = generateText();
    m_ownText.clear();
}

void Creature::writeHistoryIntoText()
{
    const QString text = ownText();
    updateText();
    m_ownText = text;
}

// --- flags of the managers ---

void Creature::setNew(bool value)
{
    m_flags.setNew(value);
    notifyUpdated();
}

void Creature::setModified(bool value)
{
    m_flags.setModified(value);
    notifyUpdated();
}

void Creature::setDeleted(bool value)
{
    m_flags.setDeleted(value);
    notifyUpdated();
}

// --- live state ---

void Creature::restoreState(const CreatureState &state)
{
    m_state = state;
    notifyUpdated();
}

void Creature::setTurnCount(int count)
{
    m_state.turnCount = count;
    notifyUpdated();
}

void Creature::setDelayed(bool delayed)
{
    m_state.delayed = delayed;
    Q_EMIT switchBoard()->doWaitingChanged();
    notifyUpdated();
}

void Creature::setReadied(bool readied)
{
    m_state.readied = readied;
    Q_EMIT switchBoard()->doWaitingChanged();
    notifyUpdated();
}

void Creature::setHidden(bool hidden)
{
    m_hidden = hidden;
    Q_EMIT switchBoard()->doNameShownChanged();
    notifyUpdated();
}

void Creature::setAlias(const QString &alias)
{
    m_alias = alias;
    Q_EMIT switchBoard()->doNameShownChanged();
    notifyUpdated();
}

void Creature::setAliasMode(int mode)
{
    m_aliasMode = mode;
    Q_EMIT switchBoard()->doNameShownChanged();
    notifyUpdated();
}

void Creature::setValue(int &field, int value)
{
    if (field == value)
        return;
    field = value;
    notifyUpdated();
}

void Creature::setCurrHP(int hp)
{
    setValue(m_state.currHP, hp);
}

void Creature::setCurrHS(int surges)
{
    setValue(m_state.currHS, surges);
}

void Creature::setCurrAP(int points)
{
    setValue(m_state.currAP, points);
}

void Creature::setInitRoll(int roll)
{
    setValue(m_initRoll, roll);
}

void Creature::setInitRandom(int random)
{
    setValue(m_initRandom, random);
}

CreatureItem Creature::item()
{
    return {this, m_initRoll, m_initRandom};
}

void Creature::setItem(const CreatureItem &item)
{
    if (m_initRoll == item.roll && m_initRandom == item.random)
        return;
    m_initRoll = item.roll;
    m_initRandom = item.random;
    notifyUpdated();
}

// --- effects ---

Effect *Creature::effectAt(int index) const
{
    return m_effects.value(index);
}

int Creature::indexOfEffect(const Effect *effect) const
{
    for (int i = effectCount() - 1; i >= 0; --i) {
        if (m_effects[i] == effect)
            return i;
    }
    return -1;
}

void Creature::addEffect(Effect *effect)
{
    insertEffect(effectCount(), effect);
}

void Creature::insertEffect(int index, Effect *effect)
{
    // An effect takes itself off its target when it dies, and off no one else.
    if (!effect || effect->target() != this || indexOfEffect(effect) >= 0)
        return;
    m_effects.insert(std::clamp(index, 0, effectCount()), effect);
    notifyEffectsChanged();
}

int Creature::removeEffect(Effect *effect)
{
    const int index = indexOfEffect(effect);
    if (index >= 0)
        m_effects.removeAt(index);
    notifyEffectsChanged();
    return index;
}

AttributeModifiers Creature::accumulateModifiers() const
{
    AttributeModifiers modifiers;
    accumulateModifiers(modifiers);
    return modifiers;
}

void Creature::accumulateModifiers(AttributeModifiers &modifiers) const
{
    for (const Effect *effect : m_effects)
        effect->accumulate(modifiers);
}

void Creature::notifyEffectsChanged()
{
    Q_EMIT doCreatureEffectsChanged(this);
    notifyUpdated();
}

#include "moc_creature.cpp"
