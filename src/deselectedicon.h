// Draws a cell's icon as disabled while it can't be clicked.
#pragma once

#include <QStyledItemDelegate>

// The icon looks disabled while a dialog stands in place of the initiative list, or the fight is
// only looked at.
class DeselectedIcon : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
