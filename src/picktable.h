// What the tables of the pick dialogs have in common.
#pragma once

class QAbstractItemModel;
class QKeyEvent;
class QLineEdit;
class QTableView;

// Whole rows, one at a time, sized to what they hold. The model stays the caller's.
void setUpPickTable(QTableView *view, QAbstractItemModel *model);
// Nothing is selected, and the first key in the view starts at its first row again.
void clearPick(QTableView *view);
// Up and Down in the fields beside the view go to it. False for other keys.
bool sendToPickTable(QTableView *view, QKeyEvent *event);
// The last row that the selection reports; -1 for none.
int selectedPickRow(const QTableView *view);
// An edit for the text by which the rows are filtered.
QLineEdit *filterEdit();
