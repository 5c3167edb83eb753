#include "effectdialog.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <algorithm>

#include "disablecombobox.h"
#include "effect.h"
#include "encounter.h"
#include "outcome.h"
#include "saturated.h"
#include "text.h"

EffectDialog::EffectDialog(const QList<Creature *> &selected, QWidget *parent)
    : FlatDialog(tr("Apply Conditions and Effects"), parent)
{
    setObjectName(QStringLiteral("effectDialog"));
    m_somethingSelected = !selected.isEmpty();
    for (Creature *creature : selected)
        m_targets << creature;
    if (!m_somethingSelected && currentCreature())
        m_targets << currentCreature();
    m_self = singleTarget();

    setContent(buildForm());
    updateActionTitle();
    updateActionItems();
    updateEndLabels();
    updateEndConditions();
    updateAttributes();
    connectForm();
    chainFocus();
    if (!isRunning())
        showInPanel(origin());
    m_damageBox->selectAll(); // the others do so themselves when Tab reaches them
    setFocusProxy(m_damageBox);
}

// --- what was entered ---

Creature *EffectDialog::origin() const
{
    return m_origins.value(m_originBox->currentIndex());
}

QList<Creature *> EffectDialog::targets() const
{
    QList<Creature *> targets;
    for (const QPointer<Creature> &target : m_targets) {
        if (target)
            targets << target;
    }
    return targets;
}

Creature *EffectDialog::singleTarget() const
{
    return m_targets.size() == 1 ? m_targets.first() : nullptr;
}

int EffectDialog::damage() const
{
    return m_damageBox->value();
}

int EffectDialog::surgeChoice() const
{
    return m_surgeBox->currentData().toInt();
}

int EffectDialog::surgeValue() const
{
    return m_surgeValueBox->value();
}

int EffectDialog::healing() const
{
    return m_healBox->value();
}

int EffectDialog::tempHP() const
{
    return m_tempBox->value();
}

QString EffectDialog::comment() const
{
    return m_commentEdit->text();
}

int EffectDialog::condition() const
{
    return m_conditionBox->currentValue();
}

EffectedAttributes EffectDialog::attributes() const
{
    EffectedAttributes attributes;
    for (int i = 0; i < AttributeCount; ++i)
        attributes.*attributeKinds[i].isAffected = m_attributes[i]->isChecked();
    return attributes;
}

int EffectDialog::endCondition() const
{
    return m_endBox->currentValue();
}

int EffectDialog::action() const
{
    return m_actionBox->currentValue();
}

// --- the end ---

void EffectDialog::done(int result)
{
    m_preview.reset();
    FlatDialog::done(result);
}

void EffectDialog::reject()
{
    m_preview.reset();
    FlatDialog::reject();
}

// When the program ends, the loop ends without done() or reject().
void EffectDialog::onFinished()
{
    m_preview.reset();
    returnPanel();
}

// --- what may be chosen ---

bool EffectDialog::isRunning()
{
    return theEncounter && theEncounter->isRunning();
}

Creature *EffectDialog::currentCreature()
{
    return theEncounter ? theEncounter->current() : nullptr;
}

bool EffectDialog::canUseActionPoint(const Creature *origin)
{
    if (!isRunning())
        return true;
    if (origin->isMonster())
        return origin->currAP() > 0;
    return origin == currentCreature() && origin->currAP() > 0 && origin->apUsedInEncounter() == 0;
}

void EffectDialog::updateActionTitle()
{
    if (const Creature *creature = origin())
        m_actionGroup->setTitle(withLiteralAmpersands(
            tr("%1's Actions").arg(shortened(creature->displayName(), LongestName))));
}

void EffectDialog::updateActionItems()
{
    const Creature *creature = origin();
    const Creature *single = singleTarget();
    const bool actsNow = isRunning() && creature && creature == currentCreature();
    // The creature whose turn it is can't be the one that needs help.
    const bool canHelp = isRunning() && single && single != currentCreature();

    const struct {
        Action action;
        bool enabled;
    } rows[] = {
        {UseActionPoint, creature && canUseActionPoint(creature)},
        {TotalDefence, actsNow},
        {SecondWind, actsNow && surgesLeft(creature) > 0 && !creature->secondWindUsed()},
        {GainHealingSurge, creature && (!isRunning() || surgesLeft(creature) < creature->maxHS())},
        {Stabilize, canHelp && single->isDying() && !single->isStable()},
        {AdministerFirstAid, canHelp && surgesLeft(single) > 0 && !single->secondWindUsed()},
    };
    for (const auto &row : rows)
        m_actionBox->setItemEnabledByValue(row.action, row.enabled);
    if (!m_actionBox->isItemEnabled(m_actionBox->currentIndex())) {
        m_actionBox->setCurrentIndex(0);
        m_lastActionIndex = 0;
    }
}

bool EffectDialog::hasAnythingToEnd() const
{
    return condition() != EffectType::None || m_ongoing.box->currentValue() != 0
        || m_effect.box->currentValue() != 0 || m_resVul.box->currentValue() != 0
        || !m_commentEdit->text().isEmpty();
}

void EffectDialog::updateEndConditions()
{
    const bool any = hasAnythingToEnd();
    const bool running = isRunning();
    const Creature *creature = origin();
    const bool originIsTarget = creature && creature == singleTarget();
    const struct {
        int value;
        bool enabled;
    } rows[] = {
        {NoEnd, !any},
        {EffectEnd::Special, any},
        {EffectEnd::EndOfOriginsTurn, any && running && creature},
        {EffectEnd::StartOfOriginsTurn, any && running && creature},
        {EffectEnd::SaveEnds, any && running},
        {EffectEnd::EndOfEncounter, any},
        {EffectEnd::EndOfTargetsTurn, any && running && !originIsTarget},
        {EffectEnd::StartOfTargetsTurn, any && running && !originIsTarget},
    };
    for (const auto &row : rows)
        m_endBox->setItemEnabledByValue(row.value, row.enabled);
    // The blank item doesn't stay chosen, nor does an end that this origin doesn't allow.
    if (!any)
        m_endBox->setCurrentIndex(0);
    else if (!m_endBox->isItemEnabled(m_endBox->currentIndex()))
        m_endBox->selectByValue(EffectEnd::Special);
    m_lastEndIndex = m_endBox->currentIndex();
}

void EffectDialog::updateEndLabels()
{
    const Creature *creature = origin();
    const QString name = creature ? shortened(creature->displayName(), LongestName) : QString();
    for (const EffectDuration &duration : effectDurations()) {
        if (!duration.originChoice)
            continue;
        m_endBox->setItemText(m_endBox->findData(duration.end),
                              creature ? Effect::tr(duration.originChoice).arg(name)
                                       : Effect::tr(duration.choice));
    }
}

void EffectDialog::updateAttributes()
{
    const bool enabled = m_effect.box->currentValue() != 0;
    m_allDefensesButton->setEnabled(enabled);
    m_hitDamageButton->setEnabled(enabled);
    for (QCheckBox *check : m_attributes)
        check->setEnabled(enabled);
}

void EffectDialog::originTouched()
{
    showInPanel(origin());
    if (!origin())
        m_actionGroup->setTitle(tr("Actions"));
    updateActionTitle();
    updatePreview();
    updateEndLabels();
    updateEndConditions();
}

void EffectDialog::damageTouched()
{
    updatePreview();
}

void EffectDialog::healingSurgeValueTouched()
{
    const int value = surgeValue();
    for (int i = 0; i < m_surgeBox->count(); ++i) {
        const int surges = m_surgeBox->itemData(i).toInt();
        if (surges > 0)
            m_surgeBox->setItemText(i, gainText(surges));
        else if (surges < 0)
            m_surgeBox->setItemText(
                i, value == 0 ? tr("Lose %1").arg(-surges) : useText(-surges, value));
    }
    updatePreview();
}

void EffectDialog::healingTouched()
{
    updatePreview();
}

void EffectDialog::actionTouched()
{
    if (m_actionBox->isItemEnabled(m_actionBox->currentIndex()))
        m_lastActionIndex = m_actionBox->currentIndex();
    else
        m_actionBox->setCurrentIndex(m_lastActionIndex);
    updatePreview();
}

void EffectDialog::conditionTouched()
{
    updateEndConditions();
}

void EffectDialog::applyCommentTouched()
{
    updateEndConditions();
}

void EffectDialog::endConditionTouched()
{
    if (m_endBox->isItemEnabled(m_endBox->currentIndex()))
        m_lastEndIndex = m_endBox->currentIndex();
    else
        m_endBox->setCurrentIndex(m_lastEndIndex);
}

// --- amounts ---

int EffectDialog::signedAmount(const AmountPair &pair)
{
    return pair.box->currentValue() < 0 ? -pair.amount->value() : pair.amount->value();
}

void EffectDialog::choiceTouched(AmountPair &pair)
{
    const int choice = pair.box->currentValue();
    pair.negative = choice <= 0;
    // The items without a number change the sign of a number that was typed.
    if (pair.amount->value() != 0 && qAbs(choice) == 1)
        amountTouched(pair);
    else
        pair.amount->setValue(qAbs(choice));
}

void EffectDialog::amountTouched(AmountPair &pair)
{
    const int amount = pair.negative ? -pair.amount->value() : pair.amount->value();
    if (!pair.box->selectByValue(amount))
        pair.box->selectByValue(amount > 0 ? 1 : -1);
}

void EffectDialog::ongoingTouched()
{
    choiceTouched(m_ongoing);
    updateEndConditions();
}

void EffectDialog::ongoingAmountTouched()
{
    amountTouched(m_ongoing);
    updateEndConditions();
}

void EffectDialog::effectTouched()
{
    choiceTouched(m_effect);
    updateAttributes();
    updateEndConditions();
}

void EffectDialog::effectAmountTouched()
{
    amountTouched(m_effect);
    updateAttributes();
    updateEndConditions();
}

void EffectDialog::resVulTouched()
{
    choiceTouched(m_resVul);
    updateEndConditions();
}

void EffectDialog::resVulAmountTouched()
{
    amountTouched(m_resVul);
    updateEndConditions();
}

void EffectDialog::toggleAttributes(Attribute first, Attribute last)
{
    const auto begin = m_attributes + first;
    const auto end = m_attributes + last + 1;
    const bool any = std::any_of(begin, end, [](QCheckBox *check) { return check->isChecked(); });
    std::for_each(begin, end, [any](QCheckBox *check) { check->setChecked(!any); });
}

void EffectDialog::onAllDefensesClicked()
{
    toggleAttributes(AC, Will);
}

void EffectDialog::onHitDamageClicked()
{
    toggleAttributes(Hit, Damage);
}

// --- preview ---

void EffectDialog::updatePreview()
{
    // Keys that were typed ahead may still arrive after the form was answered.
    if (!m_preview)
        return;
    m_preview->clear();
    updateActionItems();
    Creature *creature = origin();
    const QList<Creature *> creatures = targets();
    for (Creature *target : creatures)
        previewTarget(target, creature, action());
    if (creature && !creatures.contains(creature))
        previewOrigin(creature, action());
}

int EffectDialog::surgeChange() const
{
    return surgeChoice() == OwnSurge ? -1 : surgeChoice();
}

int EffectDialog::healingFor(const Creature *target) const
{
    if (surgeChoice() == OwnSurge)
        return surgeHealing(1, target->hsValue(), healing());
    return surgeHealing(std::max(0, -surgeChoice()), surgeValue(), healing());
}

// With the choice in the surge box, without the action. To be asked while no preview is shown.
int EffectDialog::surgesLeft(const Creature *creature) const
{
    return isTarget(creature) ? saturatedSum(creature->currHS(), surgeChange())
                              : creature->currHS();
}

void EffectDialog::previewTarget(Creature *target, Creature *origin, int action)
{
    Health after = afterDamage(target->health(), damage());
    const int heal = healingFor(target);
    if (heal != 0 || surgeChange() != 0)
        after = afterHealing(after, heal, -surgeChange());
    after = afterTempHP(after, tempHP());

    const bool isOrigin = target == origin;
    const bool spendsSurge = (action == SecondWind && isOrigin)
        || (action == AdministerFirstAid && target == targets().constFirst());
    if (spendsSurge && after.surges > 0)
        after = afterHealing(after, target->hsValue(), 1);
    if (action == GainHealingSurge && isOrigin)
        after = afterHealing(after, 0, -1);
    m_preview->show(target, after, action == UseActionPoint && isOrigin ? -1 : 0);
}

void EffectDialog::previewOrigin(Creature *origin, int action)
{
    Health after = origin->health();
    if (action == SecondWind && after.surges > 0)
        after = afterHealing(after, origin->hsValue(), 1);
    else if (action == GainHealingSurge)
        after = afterHealing(after, 0, -1);
    m_preview->show(origin, after, action == UseActionPoint ? -1 : 0);
}

#include "moc_effectdialog.cpp"
