// What the tables of the pick dialogs have in common.
#pragma once

class QAbstractItemModel;
class QLineEdit;
class QTableView;

// Whole rows, one at a time, sized to what they hold. The model stays the caller's.
void setUpPickTable(QTableView *view, QAbstractItemModel *model);
// The last row that the selection reports; -1 for none.
int selectedPickRow(const QTableView *view);
// An edit for the text by which the rows are filtered.
QLineEdit *filterEdit();
