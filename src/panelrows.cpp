#include "panelrows.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

#include "creature.h"
#include "effect.h"
#include "encounter.h"
#include "panelstyle.h"
#include "powertext.h"
#include "saturated.h"
#include "text.h"

namespace {

using namespace PanelRowStyle;

QString tr(const char *text)
{
    return QCoreApplication::translate("PanelRows", text);
}

// A field of a file as it stands there.
QString html(const QString &text)
{
    return asHtml(text).replace(u'\n', QStringLiteral("<br>"));
}

// Empty for an empty field.
QString labelled(const QString &form, const QString &text)
{
    return text.isEmpty() ? QString() : form.arg(html(text));
}

QString joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(QStringLiteral("; "));
}

// The title of a power's section, by its number.
QString sectionTitle(int section)
{
    constexpr int First = PowerSection::TrapSkills;
    constexpr std::array titles = {
        QT_TRANSLATE_NOOP("PanelRows", "Detection"),
        QT_TRANSLATE_NOOP("PanelRows", "Traits"),
        QT_TRANSLATE_NOOP("PanelRows", "Standard Actions"),
        QT_TRANSLATE_NOOP("PanelRows", "Move Actions"),
        QT_TRANSLATE_NOOP("PanelRows", "Minor Actions"),
        QT_TRANSLATE_NOOP("PanelRows", "Free Actions"),
        QT_TRANSLATE_NOOP("PanelRows", "Triggered Actions"),
        QT_TRANSLATE_NOOP("PanelRows", "Countermeasures"),
        QT_TRANSLATE_NOOP("PanelRows", "Other Powers"),
    };
    const bool known = section >= First && section < First + int(titles.size());
    return known ? tr(titles[std::size_t(section - First)]) : QString();
}

// A paragraph that begins with a word set apart, such as "Hit:".
bool beginsWithLabel(const QString &paragraph)
{
    return paragraph.startsWith(QLatin1String("<i>")) || paragraph.startsWith(QLatin1String("<b>"));
}

// Removes image tags without a picture, for which the toolkit would draw a placeholder.
QString headerHtml(const Power &power, bool crossedOut)
{
    return powerHeaderHtml(power, crossedOut).remove(QLatin1String("<img src=''> "));
}

// Far above any real creature. Each row becomes a widget, and a file full of powers would take
// minutes to build; the text of the stat block still shows all of it.
constexpr qsizetype maxRows = 1000;
// In all rows together. Beyond it only the beginning of each row is shown.
constexpr qsizetype maxLetters = 30000;

class RowBuilder {
public:
    RowBuilder(const Creature *creature, bool editing)
        : m_creature(creature), m_data(creature->data()), m_editing(editing)
    {
    }

    QList<PanelRow> build()
    {
        addTitle();
        addVitals();
        if (!m_editing)
            addConditions();
        addPowers();
        addClosing();
        if (m_rows.size() > maxRows) {
            m_rows.resize(maxRows);
            add(PowerText, QStringLiteral("&hellip;"));
        }
        return m_rows;
    }

private:
    void addTitle();
    void addVitals();
    void addAlias();
    void addConditions();
    void addPowers();
    void addPower(int index);
    void addClosing();
    void addAbilities();
    QString savesAndActionPoints() const;

    // A row with one text or none is built as such, whatever `pair` says.
    void add(int flags, const QString &left, const QString &right = {},
             PanelRow::Content pair = PanelRow::OneText)
    {
        if (left.isEmpty() && right.isEmpty())
            return;
        m_rows << PanelRow {flags, right.isEmpty() ? PanelRow::OneText : pair, fitted(left),
                            fitted(right)};
    }
    QString fitted(const QString &text)
    {
        const QString shown = shortenedHtml(text, qBound(LongestName, m_room, LongestParagraph));
        m_room -= shown.size();
        return shown;
    }
    // Pads the rows from `first` on: the first above, the last below.
    void pad(qsizetype first)
    {
        if (first >= m_rows.size())
            return;
        m_rows[first].flags |= TopPadding;
        m_rows.last().flags |= BottomPadding;
    }

    const Creature *m_creature;
    const CreatureData &m_data;
    bool m_editing;
    qsizetype m_room = maxLetters;
    QList<PanelRow> m_rows;
};

void RowBuilder::addTitle()
{
    QString name = tr("<b>%1</b>").arg(html(m_creature->displayName()));
    if (!m_data.headerText.isEmpty())
        name += tr(" <i>(%1)</i>").arg(html(m_data.headerText));
    add(Name, name, panelLevelText(m_creature), PanelRow::RightText);
    const QString xp = m_creature->isMonster() ? tr("XP %1").arg(m_data.xp) : QString();
    add(Type, html(m_creature->typeAndRace()), xp, PanelRow::RightText);
    pad(0);
}

void RowBuilder::addVitals()
{
    const qsizetype first = m_rows.size();
    const bool hasDefences = m_data.armourClass != NotStated || m_data.fortitude != NotStated
        || m_data.reflex != NotStated || m_data.will != NotStated;
    const QString initiative =
        m_creature->takesTurns() ? m_creature->initiativeText(m_editing, 2) : QString();
    add(Vital, joined({initiative, m_creature->sensesText()}));
    if (m_data.maxHP != 0)
        add(Vital, m_creature->healthText(m_editing));
    if (hasDefences)
        add(Vital, m_creature->defencesText(false));
    add(Vital,
        joined({labelled(tr("<b>Immune </b>%1"), m_data.immune),
                labelled(tr("<b>Resist </b>%1"), m_data.resist),
                labelled(tr("<b>Vulnerable </b>%1"), m_data.vulnerable),
                labelled(tr("<b>Regeneration </b>%1"), m_data.regeneration)}));
    add(Vital, savesAndActionPoints());
    add(Vital, labelled(tr("<b>Speed </b>%1"), m_data.speed));
    add(Vital, labelled(tr("<b>Detect </b>%1"), m_data.detect));
    if (!m_editing && !m_creature->alias().isEmpty())
        addAlias();
    pad(first);
}

QString RowBuilder::savesAndActionPoints() const
{
    const QString saves = m_creature->savingThrowsText(m_editing);
    const int points = m_editing ? m_creature->initAP() : m_creature->currAP();
    const int used = m_editing ? 0 : m_creature->apUsedInEncounter();
    if (m_creature->initAP() == 0 && points == 0 && used == 0)
        return saves;
    const bool counts =
        theEncounter && theEncounter->isRunning() && (used != 0 || m_creature->restAP() != 0);
    const QString text = counts && !m_editing
        ? tr("<b>Action Points </b>%1/%2").arg(points).arg(saturatedSum(used, points))
        : tr("<b>Action Points </b>%1").arg(points);
    return joined({saves, text});
}

void RowBuilder::addAlias()
{
    m_rows << PanelRow {Vital, PanelRow::AliasRow, tickImage(m_creature->aliasMode() != 0),
                        tr("<i>%1</i>").arg(html(m_creature->alias()))};
}

void RowBuilder::addConditions()
{
    const QString text = panelConditions(m_creature, QStringLiteral("<br>"));
    if (!text.isEmpty())
        add(Condition | BothPaddings, tr("<b>Conditions and Effects </b><br>") + text);
}

void RowBuilder::addPowers()
{
    int section = 0;
    for (int i = 0; i < m_data.powers.size(); ++i) {
        const Power &power = m_data.powers.at(i);
        if (power.section != section) {
            section = power.section;
            add(Heading | BothPaddings, sectionTitle(section));
        }
        addPower(i);
    }
}

void RowBuilder::addPower(int index)
{
    const Power &power = m_data.powers.at(index);
    const int used = power.isUsed() ? Used : 0;
    // The text of a trap often has no name of its own.
    const bool hasHead = !power.name.isEmpty() || !power.keywords.isEmpty();
    if (hasHead) {
        const int flags = PowerHead | used | (power.details.isEmpty() ? BothPaddings : TopPadding);
        if (m_editing)
            add(flags, headerHtml(power, false));
        else
            m_rows << PanelRow {flags, PanelRow::PowerRow, powerHeadingHtml(power, false),
                                QString(), index};
    }
    const qsizetype first = m_rows.size();
    for (qsizetype i = 0; i < power.details.size(); ++i) {
        const QString &paragraph = power.details.at(i);
        if (i == 0 && power.flavour) {
            add(PowerHead | BottomPadding | used, paragraph);
        } else if (hasHead && beginsWithLabel(paragraph)) {
            add(PowerListed | used, QStringLiteral("&diams;"), paragraph, PanelRow::BulletText);
        } else {
            add((hasHead ? PowerText : PowerListed) | used, paragraph);
        }
    }
    if (first < m_rows.size())
        m_rows.last().flags |= BottomPadding;
}

void RowBuilder::addClosing()
{
    qsizetype first = m_rows.size();
    add(Closing, labelled(tr("<b>Skills </b>%1"), m_data.skills));
    addAbilities();
    if (first < m_rows.size())
        m_rows.last().flags |= BottomPadding;

    first = m_rows.size();
    add(Tail,
        joined({labelled(tr("<b>Alignment </b>%1"), m_data.alignment),
                labelled(tr("<b>Languages </b>%1"), m_data.languages)}));
    add(Tail, labelled(tr("<b>Equipment </b>%1"), m_data.equipment));
    add(Tail, labelled(tr("<b>Description </b>%1"), m_data.description));
    if (first < m_rows.size())
        m_rows[first].flags |= TopPadding;
    add(Trailer | BothPaddings, m_data.trailerText);
}

void RowBuilder::addAbilities()
{
    struct Named {
        QString label;
        Ability ability;
    };
    const Named abilities[] = {
        {tr("Str"), m_data.strength},     {tr("Dex"), m_data.dexterity},
        {tr("Wis"), m_data.wisdom},       {tr("Con"), m_data.constitution},
        {tr("Int"), m_data.intelligence}, {tr("Cha"), m_data.charisma},
    };
    if (std::none_of(std::begin(abilities), std::end(abilities),
                     [](const Named &named) { return named.ability.score != NotStated; }))
        return;
    QString row;
    int column = 0;
    for (const Named &named : abilities) {
        row += QStringLiteral("<td width='33%'>%1</td>")
                   .arg(m_creature->abilityText(named.label, named.ability));
        if (++column % 3 != 0)
            continue;
        add(Closing,
            QStringLiteral("<table width='100%' cellspacing='0' cellpadding='0'><tr>%1</tr>"
                           "</table>")
                .arg(row));
        row.clear();
    }
}

} // namespace

QList<PanelRow> panelRows(const Creature *creature, bool editing)
{
    return RowBuilder(creature, editing).build();
}

QString panelLevelText(const Creature *creature)
{
    const bool hasClass = !creature->charClass().isEmpty();
    const QString what = hasClass ? creature->charClass() : creature->role();
    QString text = what.isEmpty()
        ? tr("<b>Level %1</b>").arg(creature->level())
        : tr("<b>Level %1 %2</b>").arg(QString::number(creature->level()), html(what));
    if (hasClass && !creature->role().isEmpty())
        text += tr(" <i>(%1)</i>").arg(html(creature->role()));
    return text;
}

QString panelConditions(const Creature *creature, const QString &separator)
{
    QStringList lines;
    const QString state = creature->conditionsText(true, true, false, false);
    if (!state.isEmpty())
        lines << state;
    for (const Effect *effect : creature->effects())
        lines << html(effect->fullText());
    return shortenedHtml(lines.join(separator));
}

QString tickImage(bool ticked)
{
    return QStringLiteral("<img src=':/images/stats/%1'>")
        .arg(ticked ? QStringLiteral("tick.png") : QStringLiteral("untick.png"));
}

bool isTickablePower(const Power &power)
{
    return power.usageKind >= 1 && power.usageKind <= 9;
}

QString powerHeadingHtml(const Power &power, bool opposite)
{
    const QString heading = shortenedHtml(headerHtml(power, opposite), LongestLine);
    if (!isTickablePower(power))
        return heading;
    return tickImage(power.isUsed() != opposite) + u' ' + heading;
}
