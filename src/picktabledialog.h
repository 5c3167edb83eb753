// What the dialogs that pick one row of a table have in common.
#pragma once

#include <QTableView>

#include "flatdialog.h"

class QAbstractButton;
class QDialogButtonBox;
class QItemSelection;
class QLineEdit;

// A filter hides some of the rows, and no key reaches those.
class PickTable : public QTableView {
    Q_OBJECT

public:
    using QTableView::QTableView;

    // Goes to the next shown row whose first column begins with `search`.
    void keyboardSearch(const QString &search) override;
};

// Whole rows, one at a time, sized to what they hold. The model stays the caller's.
void setUpPickTable(QTableView *view, QAbstractItemModel *model);
// Selects nothing, and lets the next key in the view start at the first row.
void clearPick(QTableView *view);

// A table with a filter beside it, and buttons that need a selected row.
class PickTableDialog : public FlatDialog {
    Q_OBJECT

public:
    int widgetCount() const override { return 1; }
    // Presses the first button.
    void accept() override;

protected:
    PickTableDialog(const QString &title, QWidget *parent);

    // The first is the default; only one whose result is 0 can do without a selected row. The table
    // has its model by then.
    QWidget *buildButtons(const QList<Button> &buttons);
    // The last row that the selection reports; -1 for none.
    int selectedRow() const;
    QTableView *table() const { return m_table; }
    QLineEdit *filter() const { return m_filter; }

    void keyPressEvent(QKeyEvent *event) override;

protected Q_SLOTS:
    virtual void onFilterChanged(QObject *object) = 0;

private Q_SLOTS:
    void onClicked(QAbstractButton *button);
    void localSelectionChanged(const QItemSelection &selected, const QItemSelection &deselected);

private:
    void enableButtons(bool enabled);

    QTableView *m_table;
    QLineEdit *m_filter;
    QDialogButtonBox *m_buttons = nullptr;
    // A key is being passed to the table.
    bool m_isInTable = false;
};
