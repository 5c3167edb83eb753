// The columns of the initiative list: what each is, what its cells say, and where the DM put it.
#include <QHeaderView>
#include <QMap>
#include <QMenu>
#include <QSettings>

#include "creature.h"
#include "creaturelistmodel.h"
#include "creaturetableview.h"
#include "effect.h"
#include "encounter.h"
#include "framelessdelegate.h"
#include "longtextdelegate.h"
#include "progressbar.h"
#include "readablecolours.h"
#include "richtextdelegate.h"
#include "text.h"

namespace {

using Column = CreatureListModel::Column;

constexpr int CompactInitiativeBelow = 50; // pixels
// A saved width above this is taken for damage and cut down.
constexpr int WidestColumn = 4000;
constexpr const char *SelectTip =
    QT_TRANSLATE_NOOP("CreatureListModel", "Left-click: select, right-click: multi-select");

QString settingsKey(const char *column, const char *what)
{
    return QStringLiteral("initiativeList/%1Column%2")
        .arg(QLatin1String(column), QLatin1String(what));
}

int savedWidth(const char *column, int width)
{
    return qBound(0, QSettings().value(settingsKey(column, "Width"), width).toInt(), WidestColumn);
}

bool isOuterColumn(int column)
{
    return column == Column::IconColumn || column == Column::EffectsColumn;
}

bool isGreyed(const Creature *creature)
{
    return creature->isDead() || creature->isDying() || creature->isHidden()
        || creature->isMissing() || creature->isDelayed() || creature->isReadied();
}

// Hit points as they fit on a bar.
QString hitPointsText(const Creature *creature)
{
    const int now = creature->currHP();
    const int most = creature->maxHP();
    if (most == 1 && now == 1)
        return CreatureListModel::tr("Minion");
    if (creature->tempHP() != 0)
        return QStringLiteral("%1+%2/%3").arg(now).arg(creature->tempHP()).arg(most);
    if (now == most)
        return QString::number(now);
    return QStringLiteral("%1/%2").arg(now).arg(most);
}

QAbstractItemDelegate *nameDelegate(QObject *parent)
{
    return new RichTextDelegate(false, true, false, parent);
}

QAbstractItemDelegate *numbersDelegate(QObject *parent)
{
    return new RichTextDelegate(true, true, true, parent);
}

template <typename Delegate>
QAbstractItemDelegate *delegate(QObject *parent)
{
    return new Delegate(parent);
}

} // namespace

// All that a column is, but for what a click on it does. Texts that nobody sees are null.
struct CreatureListModel::ColumnSettings {
    const char *name = nullptr; // of its keys in the settings
    const char *title = nullptr;
    const char *menuText = nullptr; // in the header's menu, which can hide the column
    const char *toolTip = nullptr; // null where it tells the creature's state
    int width = 0; // pixels, while the settings say nothing else
    bool isMovable = false;
    QString (CreatureListModel::*text)(const Creature *creature) const = nullptr;
    QAbstractItemDelegate *(*makeDelegate)(QObject *parent) = nullptr; // null for the view's own
};

// In the order of Column, in which equal saved positions are settled too.
const CreatureListModel::ColumnSettings CreatureListModel::columns[] = {
    {.name = "icon", .width = 24},
    {.name = "name",
     .title = QT_TR_NOOP("Name"),
     .toolTip = SelectTip,
     .width = 210,
     .isMovable = true,
     .text = &CreatureListModel::nameText,
     .makeDelegate = nameDelegate},
    {.name = "init",
     .title = QT_TR_NOOP("Init"),
     .menuText = QT_TR_NOOP("Init Column"),
     .toolTip = SelectTip,
     .width = 40,
     .isMovable = true,
     .text = &CreatureListModel::initiativeText,
     .makeDelegate = numbersDelegate},
    {.name = "defenses",
     .title = QT_TR_NOOP("Defenses"),
     .menuText = QT_TR_NOOP("Defenses Column"),
     .toolTip = SelectTip,
     .width = 115,
     .isMovable = true,
     .text = &CreatureListModel::defencesText,
     .makeDelegate = numbersDelegate},
    {.name = "health",
     .title = QT_TR_NOOP(" Health "),
     .menuText = QT_TR_NOOP("Health Column"),
     .toolTip = QT_TR_NOOP("Clicking here selects the HP Box in the Toolbar"),
     .width = 100,
     .isMovable = true,
     .text = &CreatureListModel::healthText,
     .makeDelegate = delegate<ProgressBarDelegate>},
    {.title = QT_TR_NOOP("Conditions and Effects"),
     .toolTip = QT_TR_NOOP("Left-click: C&E dialog, right-click: context menu"),
     .width = 240,
     .text = &CreatureListModel::effectsText,
     .makeDelegate = delegate<LongTextDelegate>},
    {.title = QT_TR_NOOP("Description"),
     .toolTip = SelectTip,
     .text = &CreatureListModel::descriptionText},
};

// --- the view ---

void CreatureListModel::setUpColumns()
{
    m_view->setItemDelegate(new FramelessDelegate(m_view));
    for (int column = 0; column < ColumnCount; ++column) {
        const ColumnSettings &settings = columns[column];
        m_view->setColumnWidth(
            column, settings.name ? savedWidth(settings.name, settings.width) : settings.width);
        if (settings.makeDelegate)
            m_view->setItemDelegateForColumn(column, settings.makeDelegate(m_view));
    }
}

void CreatureListModel::placeColumns()
{
    const QSettings saved;
    QMap<int, int> columnAt; // of two columns on one position the later one stays
    for (int column = 0; column < ColumnCount; ++column)
        if (columns[column].isMovable)
            columnAt[saved.value(settingsKey(columns[column].name, "Position"), column).toInt()] =
                column;
    QHeaderView *header = m_view->horizontalHeader();
    for (auto it = columnAt.cbegin(); it != columnAt.cend(); ++it)
        header->moveSection(header->visualIndex(it.value()), it.key());
    header->moveSection(header->visualIndex(IconColumn), 0);

    for (int column = 0; column < ColumnCount; ++column)
        if (columns[column].menuText)
            m_view->setColumnHidden(
                column, !saved.value(settingsKey(columns[column].name, "Visible"), true).toBool());
}

void CreatureListModel::writeSettings()
{
    QSettings settings;
    for (int column = 0; column < ColumnCount; ++column) {
        const ColumnSettings &known = columns[column];
        if (known.menuText)
            settings.setValue(settingsKey(known.name, "Visible"), !m_view->isColumnHidden(column));
        if (!known.isMovable)
            continue;
        // A hidden section reports no width of its own.
        m_view->setColumnHidden(column, false);
        settings.setValue(settingsKey(known.name, "Width"), m_view->columnWidth(column));
        settings.setValue(settingsKey(known.name, "Position"),
                          m_view->horizontalHeader()->visualIndex(column));
    }
}

void CreatureListModel::onHeaderMoved(int logicalIndex, int oldVisualIndex, int newVisualIndex)
{
    if (m_movingHeader)
        return;
    m_movingHeader = true;
    if (isOuterColumn(logicalIndex) != isOuterColumn(newVisualIndex))
        m_view->horizontalHeader()->moveSection(newVisualIndex, oldVisualIndex);
    m_movingHeader = false;
}

void CreatureListModel::onInitHeaderClicked()
{
    QMenu menu;
    menu.setObjectName(QStringLiteral("headerMenu"));
    for (int column = 0; column < ColumnCount; ++column) {
        if (!columns[column].menuText)
            continue;
        QAction *action = menu.addAction(tr(columns[column].menuText));
        action->setCheckable(true);
        action->setChecked(!m_view->isColumnHidden(column));
        action->setData(column);
    }
    const QAction *help = menu.addAction(tr("Need help selecting?"));

    const QAction *chosen = menu.exec(QCursor::pos());
    if (!chosen)
        return;
    if (chosen == help)
        Q_EMIT doShowHelp();
    else if (m_view)
        showColumn(chosen->data().toInt(), chosen->isChecked());
}

void CreatureListModel::showColumn(int column, bool show)
{
    m_view->setColumnHidden(column, !show);
    // In the middle of its own click the header doesn't redraw the columns that moved up.
    m_view->horizontalHeader()->viewport()->update();
}

// --- content ---

bool CreatureListModel::isCurrent(const Creature *creature) const
{
    return m_encounter && m_encounter->current() == creature;
}

int CreatureListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int CreatureListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant CreatureListModel::data(const QModelIndex &index, int role) const
{
    if (index.model() != this || !hasIndex(index.row(), index.column()) || !m_encounter)
        return {};
    const Creature *creature = m_encounter->at(index.row());
    if (!creature)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return displayText(creature, index.column());
    case Qt::DecorationRole:
        return index.column() == IconColumn ? QVariant(stateIcon(creature)) : QVariant();
    case Qt::ForegroundRole:
        return isGreyed(creature) && m_view
            ? QVariant(readableColour(QLatin1String("gray"), m_view->palette()))
            : QVariant();
    case Qt::ToolTipRole:
        return toolTip(creature, index.column());
    case Qt::AccessibleTextRole:
        return spokenText(creature, index.column());
    default:
        return {};
    }
}

QVariant CreatureListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return QStringLiteral("%1").arg(section + 1);
    static_assert(std::size(columns) == DescriptionColumn + 1);
    if (section < 0 || section > DescriptionColumn || !columns[section].title)
        return {};
    return tr(columns[section].title);
}

QVariant CreatureListModel::displayText(const Creature *creature, int column) const
{
    const auto text = columns[column].text;
    return text ? (this->*text)(creature) : QVariant();
}

QIcon CreatureListModel::stateIcon(const Creature *creature) const
{
    if (isCurrent(creature))
        return m_currentIcon;
    if (creature->isDelayed())
        return m_delayIcon;
    if (creature->isReadied())
        return m_readyIcon;
    if (creature->isHidden())
        return m_hiddenIcon;
    return creature->isDead() ? m_deadIcon : m_noIcon;
}

QString CreatureListModel::toolTip(const Creature *creature, int column) const
{
    if (columns[column].toolTip)
        return tr(columns[column].toolTip);
    // In the order of the icons.
    if (isCurrent(creature))
        return tr("It is this creature's turn");
    if (creature->isDelayed())
        return tr("This creature has delayed it's turn, click Jump In)");
    if (creature->isReadied())
        return tr("This creature has readied an action, click Jump In");
    if (creature->isHidden())
        return tr("This creature is hidden from the players");
    if (creature->isDead())
        return tr("This creature is dead, click here to remove");
    return tr("Right-click to multi-select");
}

// For screen readers: what an icon, a bar or a mark-up tells. The other cells say it themselves.
QVariant CreatureListModel::spokenText(const Creature *creature, int column) const
{
    switch (column) {
    case IconColumn:
        return stateIcon(creature).cacheKey() == m_noIcon.cacheKey()
            ? QVariant()
            : QVariant(toolTip(creature, column));
    case HealthColumn:
        return hitPointsText(creature);
    case NameColumn:
    case InitiativeColumn:
    case DefencesColumn:
        return plainText(displayText(creature, column).toString());
    default:
        return {};
    }
}

QString CreatureListModel::nameText(const Creature *creature) const
{
    QString name = asHtml(creature->displayName(), LongestName);
    if (isGreyed(creature))
        name = QStringLiteral("<font color=gray>%1</font>").arg(name);
    else if (!creature->isMonster())
        name = QStringLiteral("<font color=blue>%1</font>").arg(name);
    else if (creature->isDisabled())
        name = QStringLiteral("<font color=saddlebrown>%1</font>").arg(name);
    return isCurrent(creature) ? QStringLiteral("<b>%1</b>").arg(name) : name;
}

QString CreatureListModel::initiativeText(const Creature *creature) const
{
    const bool compact = m_view && m_view->columnWidth(InitiativeColumn) < CompactInitiativeBelow;
    return creature->initiativeText(false, compact ? 0 : 1);
}

QString CreatureListModel::defencesText(const Creature *creature) const
{
    return creature->defencesText(true);
}

QString CreatureListModel::healthText(const Creature *creature) const
{
    return QStringLiteral("%1;%2;%3")
        .arg(QString::number(creature->hpPercent()), hitPointsText(creature),
             isGreyed(creature) ? QStringLiteral("gray") : QStringLiteral("black"));
}

QString CreatureListModel::effectsText(const Creature *creature) const
{
    QStringList texts;
    for (const Effect *effect : creature->effects())
        texts << effect->fullText();
    const QString state = creature->statusText();
    if (!state.isEmpty())
        texts.prepend(state);
    return shortened(texts.join(QStringLiteral("; ")));
}

QString CreatureListModel::descriptionText(const Creature *creature) const
{
    return shortened(creature->description());
}
