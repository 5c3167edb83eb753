// The texts of a creature in lists and panels. One idea of colour runs through all: a number better
// than its base is blue, a worse one red. What a file says is escaped in the rich ones; names and
// the lines without a tag are plain text.
#include "creature.h"

#include "effectedattributes.h"
#include "encounter.h"
#include "saturated.h"
#include "terms.h"
#include "text.h"

namespace {

const QString Blue = QStringLiteral("<font color=blue>%1</font>");
const QString Red = QStringLiteral("<font color=red>%1</font>");

// A live value of which an open dialog has added `preview`.
QString previewedText(int value, int preview)
{
    if (preview == 0)
        return QString::number(value);
    return QStringLiteral("<b>%1</b>").arg((preview > 0 ? Blue : Red).arg(value));
}

// A base with the modifier of all effects; a base of 0 shows the modifier alone.
QString modifiedText(int base, int modifier)
{
    if (base == NotStated)
        return QStringLiteral("-");
    const int sum = saturatedSum(base, modifier);
    if (modifier == 0)
        return QString::number(base);
    if (modifier < 0)
        return Red.arg(sum);
    return Blue.arg(base == 0 ? signedNumber(modifier) : QString::number(sum));
}

QString savesModifiedText(int base, int modifier)
{
    if (modifier == 0)
        return QString::number(base);
    return (modifier > 0 ? Blue : Red).arg(signedNumber(saturatedSum(base, modifier)));
}

// "Group (Name)", or the one of the two that there is.
QString joinedName(const QString &group, const QString &name)
{
    if (group.isEmpty() || name.isEmpty())
        return group.isEmpty() ? name : group;
    return Creature::tr("%1 (%2)").arg(group, name);
}

bool isEncounterRunning()
{
    return theEncounter && theEncounter->isRunning();
}

} // namespace

// --- names ---

QString Creature::displayName() const
{
    if (PlayersNames::areUsed() && isHidden())
        return tr("Somebody");
    if (PlayersNames::areUsed() && aliasMode() != 0)
        return playersName();
    return isMonster() ? joinedName(group(), name()) : name();
}

QString Creature::playersName() const
{
    const bool isAliased = aliasMode() != 0;
    if (!isMonster())
        return isAliased ? alias() : name();
    return tr("%1 (%2)").arg(isAliased ? alias() : group(), name());
}

QString Creature::typeAndRace() const
{
    return joinedName(type(), race());
}

QString Creature::headerLine() const
{
    if (isMonster())
        return QString();
    QString line;
    if (level() != 0)
        line += tr("Level %1 ").arg(level());
    if (!race().isEmpty())
        line += tr("%1 ").arg(race());
    if (!charClass().isEmpty())
        line += tr("%1 ").arg(charClass());
    line.chop(1);
    return line;
}

// --- defences and conditions ---

QString Creature::defencesText(bool compact) const
{
    const AttributeModifiers modifiers = accumulateModifiers();
    const QString form = compact
        ? tr("<b>AC</b>%1 <b>F</b>%2 <b>R</b>%3 <b>W</b>%4")
        : tr("<b>AC </b>%1; <b>Fort </b>%2; <b>Reflex </b>%3; <b>Will </b>%4");
    return form.arg(modifiedText(m_data.armourClass, modifiers.ac),
                    modifiedText(m_data.fortitude, modifiers.fortitude),
                    modifiedText(m_data.reflex, modifiers.reflex),
                    modifiedText(m_data.will, modifiers.will));
}

QString Creature::dyingText() const
{
    return (isStable() ? tr("Stabilized %1/3") : tr("Dying %1/3")).arg(failedDeathSaves());
}

QString Creature::statusText() const
{
    if (isMissing())
        return tr("Missing");
    if (isDead())
        return isDisabled() ? tr("Disabled") : tr("Dead");
    return isDying() ? dyingText() : QString();
}

QString Creature::conditionsText(bool rich, bool withModifiers, bool hideMissing,
                                 bool ignoringRest) const
{
    if (isMissing()) {
        if (hideMissing)
            return QString();
        return rich ? tr("<b>Missing</b>") : tr("Missing");
    }
    if (isDead(ignoringRest)) {
        if (isDisabled())
            return rich ? tr("<b>Disabled</b>") : tr("Disabled");
        return rich ? tr("<b>Dead</b>") : tr("Dead");
    }
    if (isDying())
        return dyingText();
    QString line = turnStateText();
    if (isBloodied())
        line += rich ? tr("; <font color=red>%1</font>").arg(asHtml(term(Term::Bloodied)))
                     : tr("; %1").arg(term(Term::Bloodied));
    if (withModifiers)
        line += attackModifiersText(rich);
    return line.mid(2);
}

QString Creature::turnStateText() const
{
    QString line;
    if (isDelayed())
        line += tr("; Delayed");
    if (isReadied())
        line += tr("; Readied");
    if (isHidden())
        line += tr("; Hidden");
    return line;
}

QString Creature::attackModifiersText(bool rich) const
{
    const AttributeModifiers modifiers = accumulateModifiers();
    QString line;
    const auto append = [&line, rich](int modifier, const QString &plainForm,
                                      const QString &richForm) {
        if (modifier == 0)
            return;
        line +=
            rich ? richForm.arg(modifiedText(0, modifier)) : plainForm.arg(signedNumber(modifier));
    };
    append(modifiers.hit, tr("; To Hit %1"), tr("; <b>To Hit </b>%1"));
    append(modifiers.damage, tr("; Damage %1"), tr("; <b>Damage </b>%1"));
    append(modifiers.savingThrows, tr("; Saving Throws %1"), tr("; <b>Saving Throws </b>%1"));
    return line;
}

// --- health ---

QString Creature::hitPointsText() const
{
    const bool hasTempHP = tempHP() != 0 || m_restTempHP != 0;
    if (currHP() >= maxHP() && m_restHP == 0 && !hasTempHP)
        return QString::number(currHP());
    QString line =
        m_restHP == 0 && isBloodied() ? Red.arg(currHP()) : previewedText(currHP(), m_restHP);
    if (hasTempHP)
        line += tr("+%1").arg(previewedText(tempHP(), m_restTempHP));
    return line + tr("/%1").arg(maxHP());
}

QString Creature::surgesText() const
{
    if (maxHS() == 0)
        return QString();
    const QString current = previewedText(currHS(), m_restHS);
    if (currHS() < maxHS() || m_restHS != 0)
        return tr("; <b>HS </b>%1/%2").arg(current, QString::number(maxHS()));
    return tr("; <b>HS </b>%1").arg(current);
}

QString Creature::surgeValueText() const
{
    return maxHS() != 0 && hsValue() != 0 ? tr(" (%1)").arg(hsValue()) : QString();
}

QString Creature::healthText(bool maxOnly) const
{
    // Damage means nothing for a monster of the library.
    const bool isTemplate = maxOnly && isMonster();
    QString line = tr("<b>HP </b>");
    line += isTemplate ? QString::number(maxHP()) : hitPointsText();
    if (!isDisabled() && maxHP() > 1)
        line += tr("; <b>%1 </b>%2")
                    .arg(asHtml(term(Term::Bloodied)), QString::number(bloodiedValue()));
    if (!isTemplate)
        line += surgesText();
    else if (maxHS() != 0)
        line += tr("; <b>HS </b>%1").arg(maxHS());
    return line + surgeValueText();
}

QString Creature::playersHealthText(bool showTotals) const
{
    if (isMonster()) {
        if (!showTotals)
            return QString();
        return tr("Damage %1").arg(damageTaken()) + tr("; Heals %1").arg(healCount());
    }
    QString line = tr("<b>HP </b>");
    const QString current = previewedText(currHP(), m_restHP);
    if (tempHP() != 0 || m_restTempHP != 0) {
        line += tr("%1+%2/%3")
                    .arg(current, previewedText(tempHP(), m_restTempHP), QString::number(maxHP()));
    } else {
        line += tr("%1/%2").arg(current, QString::number(maxHP()));
    }
    return line + surgesText() + actionPointsText();
}

QString Creature::actionPointsText() const
{
    const QString current = previewedText(currAP(), m_restAP);
    if (!isEncounterRunning() || (apUsedInEncounter() == 0 && m_restAP == 0))
        return tr("; <b>AP </b>%1").arg(current);
    const int sum = saturatedSum(apUsedInEncounter(), currAP());
    return tr("; <b>AP </b>%1/%2").arg(current, QString::number(sum));
}

// --- saving throws ---

QString Creature::savingThrowsText(bool compact, int *total, bool *complex) const
{
    const QString text = asHtml(savingThrows());
    if (compact)
        return text.isEmpty() ? QString() : tr("<b>Saving Throws </b>%1").arg(text);
    const int modifier = accumulateModifiers().savingThrows;
    const int base = leadingInt(savingThrows());
    const bool isNumeric = isNumber(savingThrows());
    if (total)
        *total = saturatedSum(base, modifier);
    if (complex)
        *complex = !isNumeric;
    if (modifier == 0)
        return text.isEmpty() ? QString() : tr("<b>Saving Throws </b>%1").arg(text);
    if (isNumeric)
        return tr("<b>Saving Throws </b>%1").arg(savesModifiedText(base, modifier));
    return tr("<b>Saving Throws </b>%1; %2").arg(savesModifiedText(0, modifier), text);
}

// --- initiative, speed, abilities, senses ---

QString Creature::initiativeText(bool showBonus, int mode) const
{
    const auto framed = [mode](const QString &figure) {
        return mode == 2 ? tr("<b>Initiative </b>%1").arg(figure) : figure;
    };
    const QString bonus = takesTurns() ? signedNumber(initBonus()) : QString();
    if (showBonus || m_initRoll == 0 || !isEncounterRunning())
        return framed(bonus);
    if (m_initRoll == NotStated)
        return framed(QStringLiteral("-"));
    const QString roll = QString::number(m_initRoll);
    return mode == 0 ? roll : framed(tr("%1 (%2)").arg(bonus, roll));
}

QString Creature::speedLine(bool maxOnly) const
{
    QString line =
        speed().isNull() ? tr("<b>Speed </b>-; ") : tr("<b>Speed </b>%1; ").arg(asHtml(speed()));
    line += initiativeText(maxOnly, 2);
    if (initAP() == 0)
        return line;
    return line + (maxOnly ? tr("; <b>AP </b>%1").arg(initAP()) : actionPointsText());
}

QString Creature::abilityText(const QString &label, const Ability &ability) const
{
    if (ability.score < 1 || ability.score == NotStated)
        return tr("<b>%1 </b>-").arg(label);
    const int modifier =
        ability.modifier == NoModifier ? ability.score / 2 + level() / 2 - 5 : ability.modifier;
    return tr("<b>%1 </b>%2 (%3)")
        .arg(label, QString::number(ability.score), signedNumber(modifier));
}

QString Creature::sensesText() const
{
    QString line;
    const auto append = [&line](const QString &item) {
        line += line.isEmpty() ? item : tr("; %1").arg(item);
    };
    if (!senses().isEmpty())
        append(asHtml(senses()));
    if (m_data.perception != NotStated)
        append(tr("<b>Perception </b>%1").arg(signedNumber(m_data.perception)));
    if (m_data.insight != NotStated)
        append(tr("<b>Insight </b>%1").arg(signedNumber(m_data.insight)));
    return line;
}
