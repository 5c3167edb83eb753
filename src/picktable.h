// What the tables of the pick dialogs have in common.
#pragma once

#include <QTableView>

// Some of its rows are hidden by a filter, and no key reaches those.
class PickTable : public QTableView {
    Q_OBJECT

public:
    using QTableView::QTableView;

    // Goes to the next shown row whose first column begins with `search`.
    void keyboardSearch(const QString &search) override;
};

// Whole rows, one at a time, sized to what they hold. The model stays the caller's.
void setUpPickTable(QTableView *view, QAbstractItemModel *model);
// Nothing is selected, and the first key in the view starts at its first row again.
void clearPick(QTableView *view);
