#include "effectlistmodel.h"

#include <QHeaderView>
#include <QTableView>

#include "creature.h"
#include "deselectedicon.h"
#include "dialoghost.h"
#include "effect.h"
#include "switchboard.h"
#include "text.h"

namespace {

constexpr int TrashWidth = 24;
constexpr int RowHeight = 20;

} // namespace

EffectListModel::EffectListModel(QObject *parent)
    : QAbstractTableModel(parent), m_trashIcon(QStringLiteral(":/images/trash-can16.png"))
{
    connect(switchBoard(), &SwitchBoard::doCreatureEffectsChanged, this,
            &EffectListModel::effectListChanged);
}

void EffectListModel::attachTo(QTableView *view)
{
    m_view = view;
    view->setModel(this);
    view->setShowGrid(false);
    view->setWordWrap(false);
    view->setSelectionMode(QAbstractItemView::NoSelection);
    QHeaderView *columns = view->horizontalHeader();
    columns->hide();
    columns->setMinimumSectionSize(TrashWidth);
    columns->setStretchLastSection(true);
    view->setColumnWidth(TrashColumn, TrashWidth);
    QHeaderView *rows = view->verticalHeader();
    rows->hide();
    rows->setDefaultSectionSize(qMax(RowHeight, view->fontMetrics().height() + 2));
    view->setItemDelegateForColumn(TrashColumn, new DeselectedIcon(view));
    connect(view, &QAbstractItemView::clicked, this, &EffectListModel::internalClicked);
}

void EffectListModel::setCreature(Creature *creature)
{
    if (creature == m_creature) {
        syncRows();
        return;
    }
    beginResetModel();
    if (m_creature)
        disconnect(m_creature, nullptr, this, nullptr);
    m_creature = creature;
    m_rows = creature ? creature->effects() : QList<Effect *>();
    if (creature)
        connect(creature, &QObject::destroyed, this, &EffectListModel::syncRows);
    endResetModel();
}

void EffectListModel::effectListChanged(Creature *creature)
{
    if (creature && creature == m_creature)
        syncRows();
}

void EffectListModel::syncRows()
{
    const QList<Effect *> effects = m_creature ? m_creature->effects() : QList<Effect *>();
    qsizetype first = 0;
    qsizetype oldEnd = m_rows.size();
    qsizetype newEnd = effects.size();
    while (first < oldEnd && first < newEnd && m_rows.at(first) == effects.at(first))
        ++first;
    while (first < oldEnd && first < newEnd && m_rows.at(oldEnd - 1) == effects.at(newEnd - 1)) {
        --oldEnd;
        --newEnd;
    }
    if (first < oldEnd) {
        beginRemoveRows({}, int(first), int(oldEnd) - 1);
        m_rows.remove(first, oldEnd - first);
        endRemoveRows();
    }
    if (first < newEnd) {
        beginInsertRows({}, int(first), int(newEnd) - 1);
        m_rows = effects;
        endInsertRows();
    }
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

void EffectListModel::internalClicked(const QModelIndex &index)
{
    if (index.column() == TrashColumn && !activeFlatDialog())
        Q_EMIT doRemoveEffect(index.row());
}

int EffectListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int EffectListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant EffectListModel::data(const QModelIndex &index, int role) const
{
    if (index.model() != this || !hasIndex(index.row(), index.column()))
        return {};
    const bool isTrash = index.column() == TrashColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isTrash ? QVariant() : shortened(descriptionText(index.row()));
    case Qt::DecorationRole:
        return isTrash ? QVariant(m_trashIcon) : QVariant();
    case Qt::ToolTipRole:
        // A line is often wider than the dock. As rich text it wraps.
        return isTrash ? tr("Click to remove")
                       : QStringLiteral("<p>%1</p>").arg(asHtml(descriptionText(index.row())));
    default:
        return {};
    }
}

QVariant EffectListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return section == DescriptionColumn ? QVariant(tr("Description")) : QVariant();
}

// Worked out each time, because a name in it may have changed.
QString EffectListModel::descriptionText(int row) const
{
    const Effect *effect = m_creature ? m_creature->effectAt(row) : nullptr;
    return effect ? effect->fullText() : QString();
}

#include "moc_effectlistmodel.cpp"
