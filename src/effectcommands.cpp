// The main window's commands on conditions and effects.
#include "appendevent.h"
#include "creature.h"
#include "effect.h"
#include "effectdialog.h"
#include "effectevents.h"
#include "encounter.h"
#include "mainwindow.h"
#include "vitalityevents.h"

namespace {

void appendHealing(const EffectDialog &form)
{
    const QList<Creature *> targets = form.targets();
    const int choice = form.surgeChoice();
    if (choice == EffectDialog::OwnSurge) {
        for (Creature *target : targets)
            appendEvent<HealEvent>(form.origin(), target, 1,
                                   surgeHealing(1, target->hsValue(), form.healing()));
    } else if (choice < 0) {
        appendEvent<HealEvent>(form.origin(), targets, -choice,
                               surgeHealing(-choice, form.surgeValue(), form.healing()));
    } else if (choice > 0 || form.healing() != 0) {
        appendEvent<HealEvent>(form.origin(), targets, -choice, form.healing());
    }
}

void appendEffects(const EffectDialog &form)
{
    Creature *origin = form.origin();
    const QList<Creature *> targets = form.targets();
    const QString comment = form.comment().trimmed();
    const int end = form.endCondition();

    if (form.condition() != EffectType::None)
        appendEvent<EffectEvent>(origin, targets, comment, end, form.condition());
    if (form.ongoing() != 0)
        appendEvent<EffectEvent>(origin, targets, form.comment(), end,
                                 int(EffectType::OngoingDamage), form.ongoing());
    if (form.effect() != 0)
        appendEvent<EffectEvent>(origin, targets, comment, end, form.effect(), form.attributes());
    if (form.resVul() != 0)
        appendEvent<EffectEvent>(origin, targets, form.comment(), end, int(EffectType::Vulnerable),
                                 form.resVul());
    // A comment belongs to what was chosen; when nothing was, it is an effect by itself.
    const bool anyChosen = form.condition() != EffectType::None || form.ongoing() != 0
        || form.effect() != 0 || form.resVul() != 0;
    if (!anyChosen && !comment.isEmpty())
        appendEvent<EffectEvent>(origin, targets, comment, end, int(EffectType::OtherBad));
}

void appendAction(const EffectDialog &form)
{
    Creature *origin = form.origin();
    Creature *target = form.firstTarget();
    switch (form.action()) {
    case EffectDialog::UseActionPoint:
        appendEvent<UseActionPointEvent>(origin);
        break;
    case EffectDialog::TotalDefence:
        appendEvent<TotalDefenseEvent>(origin);
        break;
    case EffectDialog::SecondWind:
        appendEvent<SecondWindEvent>(origin);
        break;
    case EffectDialog::Stabilize:
        appendEvent<StabilizeEvent>(origin, target);
        break;
    case EffectDialog::AdministerFirstAid:
        appendEvent<AdministerFirstAidEvent>(origin, target);
        break;
    case EffectDialog::GainHealingSurge:
        appendEvent<GainHealingSurgeEvent>(origin);
        break;
    default:
        break;
    }
}

} // namespace

void MainWindow::onAddConditionOrEffect()
{
    if (!theHistory->mayWrite())
        return;
    EffectDialog form(selectedCreatures());
    if (!form.exec())
        return;
    // Changes outside the history are logged even when nothing was entered.
    if (!streamForEvent() || form.targets().isEmpty())
        return;
    if (form.damage() > 0)
        appendEvent<DamageEvent>(form.origin(), form.targets(), form.damage());
    appendHealing(form);
    if (form.tempHP() > 0)
        appendEvent<SetTempHPEvent>(form.targets(), form.tempHP());
    appendEffects(form);
    appendAction(form);
}

void MainWindow::markByCurrent(const QList<Creature *> &creatures)
{
    appendEvent<EffectEvent>(theEncounter->current(), creatures, QString(), int(EffectEnd::Special),
                             int(EffectType::Marked));
}

void MainWindow::removeCondEffect(int index)
{
    Creature *creature = selectedCreature(0);
    Effect *effect = creature ? creature->effectAt(index) : nullptr;
    if (effect)
        appendEvent<RemoveOnGoingEvent>(creature, effect);
}
