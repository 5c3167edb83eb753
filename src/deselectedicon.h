// Draws a cell's icon as one that can be clicked, or can't just now.
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
