#include "creaturetableview.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMouseEvent>
#include <algorithm>

#include "creaturelistmodel.h"

namespace {

constexpr int NoDistance = 100000000;
constexpr int MinimumWidth = 360;
constexpr int RowHeight = 24;
constexpr int RowMargin = 4; // above and below the text

QColor blend(const QColor &a, const QColor &b, double shareOfB)
{
    const auto mix = [shareOfB](int x, int y) { return int(x + (y - x) * shareOfB); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

} // namespace

CreatureTableView::CreatureTableView(QWidget *parent) : QTableView(parent)
{
    setMinimumWidth(MinimumWidth);
    softenSelectionColours();
    fitRowsToFont();
}

void CreatureTableView::scrollToRow(int row)
{
    // Rows that were just added have no position before this.
    executeDelayedItemsLayout();
    scrollTo(model()->index(row, 0), EnsureVisible);
}

void CreatureTableView::keyPressEvent(QKeyEvent *event)
{
    // None of the toolkit's own keys: they select all rows, search for typed letters, and move a
    // current cell that has nothing to do with the rows that are selected.
    const bool vertical = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (!vertical || !selectionModel()) {
        event->ignore();
        return;
    }
    const int row = selectByKey(*event);
    if (row >= 0)
        scrollToRow(row);
}

void CreatureTableView::mousePressEvent(QMouseEvent *event)
{
    m_lastPressX = event->position().toPoint().x();
    // With it the list would scroll sideways after a click on a column that is cut off.
    setAutoScroll(false);
    QTableView::mousePressEvent(event);
    setAutoScroll(true);
    m_pressed = indexAt(event->position().toPoint());
    m_lastPressed = m_pressed;
}

void CreatureTableView::mouseReleaseEvent(QMouseEvent *event)
{
    QTableView::mouseReleaseEvent(event);
    const QModelIndex pressed = m_pressed;
    m_pressed = QModelIndex();
    const bool clicks = event->button() == Qt::LeftButton || event->button() == Qt::RightButton;
    if (clicks && pressed.isValid() && pressed == indexAt(event->position().toPoint()))
        Q_EMIT itemClicked(pressed); // which may open a dialog and change the rows
}

void CreatureTableView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || event->modifiers() != Qt::NoModifier) {
        // Two quick clicks that each toggle a row are no double click.
        QMouseEvent press(QEvent::MouseButtonPress, event->position(), event->globalPosition(),
                          event->button(), event->buttons(), event->modifiers(),
                          event->pointingDevice());
        mousePressEvent(&press);
        return;
    }
    // If the first click removed its row, the second one would select the next row.
    if (m_lastPressed.isValid())
        QTableView::mouseDoubleClickEvent(event);
    m_pressed = QModelIndex();
}

void CreatureTableView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    if (!isByKey || !selectionModel() || !selectionModel()->hasSelection()) {
        QTableView::contextMenuEvent(event);
        return;
    }
    const int row = selectedRows().first();
    scrollToRow(row);
    const QRect cell = visualRect(model()->index(row, CreatureListModel::NameColumn));
    Q_EMIT menuRequested(viewport()->mapToGlobal((cell & viewport()->rect()).bottomLeft()));
}

bool CreatureTableView::focusNextPrevChild(bool next)
{
    // Tab leaves the list for the HP box instead of walking its cells.
    return QWidget::focusNextPrevChild(next);
}

void CreatureTableView::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        softenSelectionColours();
    else if (event->type() == QEvent::FontChange)
        fitRowsToFont();
}

void CreatureTableView::fitRowsToFont()
{
    const int needed = fontMetrics().height() + 2 * RowMargin;
    verticalHeader()->setDefaultSectionSize(qMax(RowHeight, needed));
}

void CreatureTableView::softenSelectionColours()
{
    // The colours of the texts carry a meaning, also on a selected row.
    QPalette soft = QApplication::palette(this);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor highlight =
            QApplication::palette().color(QPalette::Active, QPalette::Highlight);
        soft.setColor(group, QPalette::Highlight,
                      blend(soft.color(group, QPalette::Base), highlight, 0.35));
        soft.setColor(group, QPalette::HighlightedText, soft.color(group, QPalette::Text));
    }
    // Setting the palette sends another PaletteChange.
    if (soft != palette())
        setPalette(soft);
}

QItemSelectionModel::SelectionFlags CreatureTableView::selectionCommand(const QModelIndex &index,
                                                                        const QEvent *event) const
{
    if (event && selectionModel()) {
        if (event->type() == QEvent::MouseButtonPress)
            selectByMouse(index, *static_cast<const QMouseEvent *>(event));
        else if (event->type() == QEvent::KeyPress)
            selectByKey(*static_cast<const QKeyEvent *>(event));
    }
    return QItemSelectionModel::NoUpdate;
}

void CreatureTableView::selectByMouse(const QModelIndex &index, const QMouseEvent &event) const
{
    const Qt::MouseButton button = event.button();
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    const int row = index.row();
    // A press on the conditions acts on the whole selection.
    if (index.column() == CreatureListModel::EffectsColumn && selectionModel()->isSelected(index))
        return;
    if (modifiers == Qt::ShiftModifier) {
        if (button == Qt::LeftButton)
            expandSelectionTo(row);
        return;
    }
    const bool commandKey = modifiers == Qt::MetaModifier || modifiers == Qt::ControlModifier;
    const bool plainOrMeta = modifiers == Qt::NoModifier || modifiers == Qt::MetaModifier;
    if ((plainOrMeta && button == Qt::RightButton) || (commandKey && button == Qt::LeftButton)) {
        QItemSelection selection = selectionModel()->selection();
        selection.merge(rowSelection(row, row), QItemSelectionModel::Toggle);
        selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    } else if (modifiers == Qt::NoModifier) {
        selectOnly(row);
    }
}

void CreatureTableView::expandSelectionTo(int row) const
{
    if (row < 0)
        return;
    int nearest = -1;
    int distance = NoDistance;
    for (const int selected : selectedRows()) {
        if (selected != row && qAbs(selected - row) < distance) {
            nearest = selected;
            distance = qAbs(selected - row);
        }
    }
    if (nearest < 0) {
        selectOnly(row);
        return;
    }
    QItemSelection selection = selectionModel()->selection();
    selection.merge(rowSelection(qMin(nearest, row), qMax(nearest, row)),
                    QItemSelectionModel::Select);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

int CreatureTableView::selectByKey(const QKeyEvent &event) const
{
    const QList<int> rows = selectedRows();
    if (rows.isEmpty())
        return -1;
    int row = -1;
    if (event.key() == Qt::Key_Up)
        row = rows.first() - 1;
    else if (event.key() == Qt::Key_Down && rows.last() + 1 < model()->rowCount())
        row = rows.last() + 1;
    if (row < 0)
        return -1;
    QItemSelection selection;
    if (event.modifiers().testFlag(Qt::ShiftModifier))
        selection = selectionModel()->selection();
    selection.merge(rowSelection(row, row), QItemSelectionModel::Select);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    return row;
}

QList<int> CreatureTableView::selectedRows() const
{
    QSet<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.insert(row);
    QList<int> sorted = rows.values();
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

void CreatureTableView::selectOnly(int row) const
{
    if (row < 0)
        selectionModel()->clearSelection();
    else
        selectionModel()->select(rowSelection(row, row),
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QItemSelection CreatureTableView::rowSelection(int first, int last) const
{
    if (first < 0)
        return {};
    return {model()->index(first, 0), model()->index(last, model()->columnCount() - 1)};
}

#include "moc_creaturetableview.cpp"
