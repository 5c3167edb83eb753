#include "eventlistmodel.h"

#include <QColor>
#include <QEvent>
#include <QTableView>

#include "dialoghost.h"
#include "history.h"
#include "text.h"

EventListModel::EventListModel(QObject *parent)
    : QAbstractTableModel(parent), m_arrowIcon(QStringLiteral(":/images/arrow-right128.png")),
      m_noIcon(QStringLiteral(":/images/no-icon.png"))
{
}

void EventListModel::setView(QTableView *view)
{
    m_view = view;
    view->setSelectionMode(QAbstractItemView::NoSelection);
    connect(view, &QAbstractItemView::clicked, this, &EventListModel::onInitListClicked);
    view->viewport()->installEventFilter(this);
}

void EventListModel::attachHistory()
{
    if (m_history)
        disconnect(m_history, nullptr, this, nullptr);
    m_history = theHistory;
    if (m_history) {
        connect(m_history, &History::doHistoryChanged, this, &EventListModel::onHistoryChanged);
        connect(m_history, &QObject::destroyed, this, &EventListModel::syncRows);
    }
    syncRows();
    drawAnew();
}

void EventListModel::onHistoryChanged()
{
    syncRows();
    drawAnew();
    showPosition();
}

void EventListModel::showPosition()
{
    if (!m_view || !m_history)
        return;
    // Rows that were just added have no position before this.
    m_view->doItemsLayout();
    m_view->scrollTo(index(m_history->position(), 0), QAbstractItemView::EnsureVisible);
}

// The log is replayed before the window is shown, when the view has no size to scroll by.
bool EventListModel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        QMetaObject::invokeMethod(this, &EventListModel::showPosition, Qt::QueuedConnection);
    return QAbstractTableModel::eventFilter(watched, event);
}

void EventListModel::syncRows()
{
    const int rows = m_history ? m_history->eventCount() : 0;
    if (rows < m_rows) {
        beginRemoveRows({}, rows, m_rows - 1);
        m_rows = rows;
        endRemoveRows();
    } else if (rows > m_rows) {
        beginInsertRows({}, m_rows, rows - 1);
        m_rows = rows;
        endInsertRows();
    }
}

// The arrow may stand elsewhere and a name in any of the lines may have changed.
void EventListModel::drawAnew()
{
    if (m_rows > 0)
        Q_EMIT dataChanged(index(0, 0), index(m_rows - 1, 0));
}

void EventListModel::onInitListClicked(const QModelIndex &index)
{
    if (!m_history || activeFlatDialog())
        return;
    m_history->moveTo(index.row());
    // A jump isn't announced as a change of the history, but the arrow has moved.
    if (m_view)
        m_view->viewport()->update();
}

int EventListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int EventListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant EventListModel::data(const QModelIndex &index, int role) const
{
    if (index.model() != this || !hasIndex(index.row(), index.column()) || !m_history)
        return {};
    const int row = index.row();
    const int position = m_history->position();
    switch (role) {
    case Qt::DisplayRole:
        return shortened(m_history->eventText(row));
    case Qt::ToolTipRole:
        // A line is often wider than the dock. As rich text it wraps.
        return QStringLiteral("<p>%1</p>").arg(asHtml(m_history->eventText(row)));
    case Qt::ForegroundRole:
        return row > position ? QVariant(QColor(QLatin1String("grey"))) : QVariant();
    case Qt::DecorationRole:
        return row == position ? m_arrowIcon : m_noIcon;
    default:
        return {};
    }
}

QVariant EventListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return QStringLiteral("%1").arg(section + 1);
    return section == 0 ? QVariant(tr("Event")) : QVariant();
}

#include "moc_eventlistmodel.cpp"
