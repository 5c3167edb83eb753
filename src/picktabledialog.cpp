#include "picktabledialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>

namespace {

constexpr int RowHeight = 24;
constexpr int WidestColumn = 320; // pixels, so that one long name doesn't push out the rest

} // namespace

void PickTable::keyboardSearch(const QString &search)
{
    const int rows = model() ? model()->rowCount() : 0;
    // With no current row (-1) the search starts at the first.
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

PickTableDialog::PickTableDialog(const QString &title, QWidget *parent)
    : FlatDialog(title, parent), m_table(new PickTable),
      m_filter(filterEdit(QStringLiteral("filterEdit"),
                          [this](QObject *edit) { onFilterChanged(edit); }))
{
    connect(m_table, &QTableView::doubleClicked, this, [this] { accept(); });
    setFocusProxy(m_filter);
}

QWidget *PickTableDialog::buildButtons(const QList<Button> &buttons)
{
    m_buttons = buttonRow(buttons);
    qobject_cast<QPushButton *>(m_buttons->buttons().constFirst())->setDefault(true);
    connect(m_buttons, &QDialogButtonBox::clicked, this, &PickTableDialog::onClicked);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &PickTableDialog::localSelectionChanged);
    enableButtons(false);
    return m_buttons;
}

void PickTableDialog::enableButtons(bool enabled)
{
    for (QAbstractButton *button : m_buttons->buttons())
        button->setEnabled(enabled || resultOf(button) == 0);
}

void PickTableDialog::onClicked(QAbstractButton *button)
{
    done(resultOf(button));
}

void PickTableDialog::localSelectionChanged(const QItemSelection &, const QItemSelection &)
{
    enableButtons(m_table->selectionModel()->hasSelection());
}

void PickTableDialog::accept()
{
    m_buttons->buttons().constFirst()->click();
}

void PickTableDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Up && event->key() != Qt::Key_Down) {
        FlatDialog::keyPressEvent(event);
        return;
    }
    // Also works from the fields beside the table. At the edge of the list the table returns the
    // key.
    if (!m_isInTable) {
        const QScopedValueRollback guard(m_isInTable, true);
        m_table->setFocus();
        QCoreApplication::sendEvent(m_table, event);
    }
    event->accept();
}

int PickTableDialog::selectedRow() const
{
    const QModelIndexList selected = m_table->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? -1 : selected.last().row();
}

#include "moc_picktabledialog.cpp"
