#include "picktable.h"

#include <QHeaderView>

namespace {

constexpr int RowHeight = 24;
constexpr int WidestColumn = 320; // pixels, so that one long name doesn't push out the rest

} // namespace

void PickTable::keyboardSearch(const QString &search)
{
    const int rows = model() ? model()->rowCount() : 0;
    // -1, for none, starts at the first row.
    const int start = currentIndex().row() + 1;
    for (int i = 0; i < rows; ++i) {
        const QModelIndex index = model()->index((start + i) % rows, 0);
        if (isRowHidden(index.row())
            || !index.data().toString().startsWith(search, Qt::CaseInsensitive))
            continue;
        setCurrentIndex(index);
        return;
    }
}

void setUpPickTable(QTableView *view, QAbstractItemModel *model)
{
    view->setModel(model);
    view->setShowGrid(false);
    view->setAlternatingRowColors(true);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setTabKeyNavigation(false);
    view->setWordWrap(true);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(RowHeight);
    view->verticalHeader()->setMinimumSectionSize(RowHeight);
    view->horizontalHeader()->setMaximumSectionSize(WidestColumn);
    view->horizontalHeader()->setHighlightSections(false);
    view->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    view->resizeColumnsToContents();
    view->horizontalHeader()->setMaximumSectionSize(QWIDGETSIZE_MAX);
    view->horizontalHeader()->setStretchLastSection(true);
    view->resizeRowsToContents();
    clearPick(view);
}

void clearPick(QTableView *view)
{
    view->clearSelection();
    view->setCurrentIndex(QModelIndex());
}

#include "moc_picktable.cpp"
