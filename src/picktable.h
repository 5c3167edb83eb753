// What the tables of the pick dialogs have in common.
#pragma once

class QAbstractItemModel;
class QTableView;

// Whole rows, one at a time, sized to what they hold. The model stays the caller's.
void setUpPickTable(QTableView *view, QAbstractItemModel *model);
// Nothing is selected, and the first key in the view starts at its first row again.
void clearPick(QTableView *view);
