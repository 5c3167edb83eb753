#include "picktable.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>

namespace {

constexpr int RowHeight = 24;
constexpr int WidestColumn = 320; // pixels, so that one long name doesn't push out the rest

} // namespace

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

bool sendToPickTable(QTableView *view, QKeyEvent *event)
{
    if (event->key() != Qt::Key_Up && event->key() != Qt::Key_Down)
        return false;
    view->setFocus();
    QCoreApplication::sendEvent(view, event);
    return true;
}

int selectedPickRow(const QTableView *view)
{
    const QModelIndexList selected = view->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.last().row();
}

QLineEdit *filterEdit()
{
    auto *edit = new QLineEdit;
    edit->setObjectName(QStringLiteral("filterEdit"));
    edit->setPlaceholderText(QCoreApplication::translate("PickDialogs", "Enter filter text"));
    edit->setClearButtonEnabled(true);
    return edit;
}
