// A cell without a frame.
#pragma once

#include <QStyledItemDelegate>

// Draws no focus frame around the cell of the last click or key: a list shows by other means what
// is selected or current.
class FramelessDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state.setFlag(QStyle::State_HasFocus, false);
    }
};
