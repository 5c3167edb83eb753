#include "creaturelistmodel.h"

#include <QApplication>
#include <QHeaderView>
#include <QMenu>
#include <QSet>

#include <algorithm>
#include <functional>

#include "creature.h"
#include "creatureheaderview.h"
#include "creaturetableview.h"
#include "encounter.h"
#include "switchboard.h"
#include "terms.h"
#include "text.h"

namespace {

// The icon looks the same in a selected row. The style would tint it, but its colours carry a
// meaning.
QIcon listIcon(const QString &file)
{
    QIcon icon(file);
    icon.addFile(file, QSize(), QIcon::Selected);
    return icon;
}

} // namespace

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
    if (index.column() != EffectsColumn && isRowSelected(index.row()))
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

#include "moc_creaturelistmodel.cpp"
