#include "creaturelistmodel.h"

#include <QApplication>
#include <QHeaderView>
#include <QMap>
#include <QMenu>
#include <QSet>
#include <QSettings>
#include <QStyledItemDelegate>

#include <algorithm>
#include <functional>

#include "creature.h"
#include "creatureheaderview.h"
#include "creaturetableview.h"
#include "effect.h"
#include "encounter.h"
#include "longtextdelegate.h"
#include "progressbar.h"
#include "richtextdelegate.h"
#include "switchboard.h"
#include "terms.h"
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

// The icon looks the same in a selected row. The style would tint it, but its colours carry a
// meaning.
QIcon listIcon(const QString &file)
{
    QIcon icon(file);
    icon.addFile(file, QSize(), QIcon::Selected);
    return icon;
}

// Draws no focus frame around the cell of the last click, because only the selected rows count.
class FramelessDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state.setFlag(QStyle::State_HasFocus, false);
    }
};

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

CreatureListModel::CreatureListModel(QObject *parent)
    : QAbstractTableModel(parent),
      m_currentIcon(listIcon(QStringLiteral(":/images/arrow-right-red128.png"))),
      m_noIcon(listIcon(QStringLiteral(":/images/no-icon.png"))),
      m_delayIcon(listIcon(QStringLiteral(":/images/delay-turn16.png"))),
      m_readyIcon(listIcon(QStringLiteral(":/images/ready-action16.png"))),
      m_hiddenIcon(listIcon(QStringLiteral(":/images/faided-eye128.png"))),
      m_deadIcon(listIcon(QStringLiteral(":/images/skull-xbones16.png")))
{
}

CreatureListModel::~CreatureListModel()
{
    if (m_view)
        writeSettings();
}

void CreatureListModel::connectEncounter()
{
    m_encounter = theEncounter;
    if (m_encounter) {
        connect(m_encounter, &Encounter::doCurrentCreatureChanged, this,
                &CreatureListModel::onCurrentCreatureChanged);
        connect(m_encounter, &Encounter::doCreatureCountChanged, this,
                &CreatureListModel::syncRows);
        connect(m_encounter, &QObject::destroyed, this, [this] {
            beginResetModel();
            m_rows.clear();
            endResetModel();
        });
    }
    connect(switchBoard(), &SwitchBoard::doCreatureUpdated, this,
            &CreatureListModel::onCreatureInListUpdated);
    connect(switchBoard(), &SwitchBoard::doCreatureEffectsChanged, this,
            &CreatureListModel::onCreatureInListUpdated);
    connect(switchBoard(), &SwitchBoard::doDisableWidgetDisplay, this, [this] { setFrozen(true); });
    connect(switchBoard(), &SwitchBoard::doEnableWidgetDisplay, this, [this] { setFrozen(false); });
    syncRows();
}

// --- the view ---

void CreatureListModel::attachTo(CreatureTableView *view)
{
    m_view = view;
    connectEncounter();
    auto *header = new CreatureHeaderView(view);
    header->setObjectName(QStringLiteral("initiativeHeader"));
    header->setHighlightSections(false);
    header->setMinimumSectionSize(16);
    view->setHorizontalHeader(header);
    view->setModel(this);

    view->setShowGrid(false);
    view->setAlternatingRowColors(true);
    view->setWordWrap(false);
    setUpColumns();
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->verticalHeader()->hide();
    placeColumns();
    header->setStretchLastSection(true);
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    connectView();
}

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

void CreatureListModel::connectView()
{
    const auto *header = qobject_cast<CreatureHeaderView *>(m_view->horizontalHeader());
    connect(header, &QHeaderView::sectionMoved, this, &CreatureListModel::onHeaderMoved);
    connect(header, &QHeaderView::sectionClicked, this, &CreatureListModel::onInitHeaderClicked);
    connect(header, &CreatureHeaderView::doRightClicked, this,
            &CreatureListModel::onInitHeaderClicked);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CreatureListModel::onInternalSelectionChanged);
    connect(m_view, &QAbstractItemView::pressed, this, &CreatureListModel::onInitListPressed);
    connect(m_view, &CreatureTableView::itemClicked, this, &CreatureListModel::onInitListClicked);
    connect(m_view, &QAbstractItemView::doubleClicked, this,
            &CreatureListModel::onInternalDoubleClick);
    connect(m_view, &CreatureTableView::menuRequested, this, &CreatureListModel::openContextMenu);
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

// --- selection ---

void CreatureListModel::clearSelection()
{
    if (m_view)
        m_view->clearSelection();
}

bool CreatureListModel::handleKey(int key)
{
    if (key != Qt::Key_Escape)
        return false;
    clearSelection();
    return true;
}

void CreatureListModel::setSelectedRows(const QList<int> &rows)
{
    if (!m_view)
        return;
    QItemSelection selection;
    for (const int row : rows)
        selection.select(index(row, IconColumn), index(row, EffectsColumn));
    m_view->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void CreatureListModel::onInternalSelectionChanged(const QItemSelection &, const QItemSelection &)
{
    // While rows are inserted and removed the toolkit still reports their old numbers.
    if (!m_syncing)
        reportSelection();
}

void CreatureListModel::reportSelection()
{
    if (!m_view)
        return;
    const QList<int> rows = m_view->selectedRows();
    Q_EMIT doSelectionChanged(QSet<int>(rows.cbegin(), rows.cend()));
}

bool CreatureListModel::isRowSelected(int row) const
{
    return m_view->selectedRows().contains(row);
}

QList<Creature *> CreatureListModel::selectedCreatures() const
{
    QList<Creature *> creatures;
    const QList<int> rows = m_view->selectedRows();
    for (const int row : rows) {
        if (Creature *creature = m_encounter ? m_encounter->at(row) : nullptr)
            creatures << creature;
    }
    return creatures;
}

// --- clicks ---

void CreatureListModel::onInitListPressed(const QModelIndex &)
{
    m_pressedButtons = QApplication::mouseButtons();
    m_pressedModifiers = QApplication::keyboardModifiers();
}

void CreatureListModel::onInitListClicked(const QModelIndex &index)
{
    const int row = index.row();
    Creature *creature = m_encounter ? m_encounter->at(row) : nullptr;
    switch (index.column()) {
    case IconColumn:
        // A right click only selects: it could take the corpses off that are to be selected.
        if (creature && creature->isDead() && !m_pressedButtons.testFlag(Qt::RightButton))
            Q_EMIT doRemoveCreatures({creature});
        break;
    case HealthColumn:
        Q_EMIT doFocusHPBox();
        break;
    case EffectsColumn:
        if (!isRowSelected(row))
            break;
        if (pressedForMenu())
            openContextMenu(QCursor::pos());
        else
            Q_EMIT doAddEffect();
        break;
    default:
        break;
    }
}

void CreatureListModel::onInternalDoubleClick(const QModelIndex &index)
{
    if (index.column() <= HealthColumn && isRowSelected(index.row()))
        Q_EMIT doAddEffect();
}

bool CreatureListModel::pressedForMenu() const
{
    const bool commandKey =
        m_pressedModifiers == Qt::MetaModifier || m_pressedModifiers == Qt::ControlModifier;
    return m_pressedButtons.testFlag(Qt::RightButton)
        || (m_pressedButtons.testFlag(Qt::LeftButton) && commandKey);
}

void CreatureListModel::openContextMenu(const QPoint &globalPosition)
{
    const QList<Creature *> selected = selectedCreatures();
    const Creature *current = m_encounter ? m_encounter->current() : nullptr;
    const bool showsAlias =
        std::any_of(selected.begin(), selected.end(), [](const Creature *creature) {
            return !creature->alias().isEmpty() && creature->aliasMode() == 0;
        });

    struct Entry {
        QString text;
        std::function<void()> run;
    };
    QList<Entry> entries {{tr("Conditions and Effects..."), [this] { Q_EMIT doAddEffect(); }}};
    if (current)
        entries << Entry {
            tr("%1 by %2").arg(term(Term::Marked), shortened(current->displayName(), LongestName)),
            [&] { Q_EMIT doMark(selected); }};
    entries << QList<Entry> {{tr("Remove Selected"), [&] { Q_EMIT doRemoveCreatures(selected); }},
                             {tr("Initiative Up"), [this] { Q_EMIT doMoveInitiative(-1); }},
                             {tr("Initiative Down"), [this] { Q_EMIT doMoveInitiative(1); }},
                             {showsAlias ? tr("Show Alias") : tr("Hide Alias"),
                              [&] { Q_EMIT doSetAliasShown(selected, showsAlias); }},
                             {tr("Set Alias..."), [&] { Q_EMIT doEditAlias(selected); }},
                             {tr("Need help selecting?"), [this] { Q_EMIT doShowHelp(); }}};

    QMenu menu;
    menu.setObjectName(QStringLiteral("contextMenu"));
    for (const Entry &entry : std::as_const(entries))
        menu.addAction(withLiteralAmpersands(entry.text));
    // Only now has the menu's event loop ended. Most entries run one of their own.
    const qsizetype chosen = menu.actions().indexOf(menu.exec(globalPosition));
    if (chosen >= 0)
        entries.at(chosen).run();
}

// --- refreshing ---

void CreatureListModel::onCurrentCreatureChanged()
{
    m_scrollToCurrent = true;
    onCreatureInListUpdated();
}

void CreatureListModel::onCreatureInListUpdated()
{
    if (m_frozen)
        return;
    syncRows();
    if (m_refreshPending)
        return;
    // A queued call comes before the next frame, a timer after it.
    m_refreshPending = true;
    QMetaObject::invokeMethod(this, &CreatureListModel::refresh, Qt::QueuedConnection);
}

void CreatureListModel::refresh()
{
    m_refreshPending = false;
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    const int row = m_encounter ? m_encounter->currentIndex() : -1;
    if (m_scrollToCurrent && m_view && row >= 0)
        m_view->scrollToRow(row);
    m_scrollToCurrent = false;
}

void CreatureListModel::setFrozen(bool frozen)
{
    m_frozen = frozen;
    if (!frozen)
        onCurrentCreatureChanged();
}

void CreatureListModel::syncRows()
{
    if (m_frozen || m_syncing || !m_encounter)
        return;
    const QList<Creature *> &rows = m_encounter->creatures().list();
    if (rows != m_rows)
        applyRows(rows);
}

void CreatureListModel::applyRows(const QList<Creature *> &rows)
{
    m_syncing = true;
    const QSet<Creature *> members(rows.cbegin(), rows.cend());
    if (members.size() == rows.size()) {
        removeMissingRows(rows);
        insertNewRows(rows);
        reorderRows(rows);
    } else {
        // Only a damaged log puts one creature into two rows, which then can't be told apart.
        beginResetModel();
        m_rows = rows;
        endResetModel();
    }
    m_syncing = false;
    reportSelection();
}

void CreatureListModel::removeMissingRows(const QList<Creature *> &rows)
{
    const QSet<Creature *> members(rows.cbegin(), rows.cend());
    for (int last = int(m_rows.size()) - 1; last >= 0; --last) {
        if (members.contains(m_rows.at(last)))
            continue;
        int first = last;
        while (first > 0 && !members.contains(m_rows.at(first - 1)))
            --first;
        beginRemoveRows({}, first, last);
        m_rows.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
}

void CreatureListModel::insertNewRows(const QList<Creature *> &rows)
{
    const QSet<Creature *> known(m_rows.cbegin(), m_rows.cend());
    for (int first = 0; first < rows.size(); ++first) {
        if (known.contains(rows.at(first)))
            continue;
        int end = first + 1;
        while (end < rows.size() && !known.contains(rows.at(end)))
            ++end;
        beginInsertRows({}, first, end - 1);
        for (int row = first; row < end; ++row)
            m_rows.insert(row, rows.at(row));
        endInsertRows();
        first = end;
    }
}

void CreatureListModel::reorderRows(const QList<Creature *> &rows)
{
    if (m_rows == rows)
        return;
    Q_EMIT layoutAboutToBeChanged();
    QHash<Creature *, int> newRow;
    for (int row = 0; row < rows.size(); ++row)
        newRow.insert(rows.at(row), row);
    const QModelIndexList kept = persistentIndexList();
    QModelIndexList moved;
    moved.reserve(kept.size());
    for (const QModelIndex &old : kept)
        moved << index(newRow.value(m_rows.at(old.row())), old.column());
    m_rows = rows;
    changePersistentIndexList(kept, moved);
    Q_EMIT layoutChanged();
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
        return isGreyed(creature) ? QVariant(QColor(QLatin1String("gray"))) : QVariant();
    case Qt::ToolTipRole:
        return toolTip(creature, index.column());
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

#include "moc_creaturelistmodel.cpp"
