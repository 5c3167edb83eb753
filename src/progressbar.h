// The health bar of a cell: what draws it, and the delegate of the initiative list.
#pragma once

#include <QStyledItemDelegate>

class ProgressBarPainter {
public:
    // `percent` from -100 to 100; a negative bar grows from the far end. `grey` is the dull form.
    void drawBar(QPainter *painter, const QRect &cell, int percent, bool grey,
                 Qt::Orientation orientation = Qt::Horizontal) const;
    // The bar's place in the cell.
    static QRect barRect(const QRect &cell);
    // The part of `bar` that is filled.
    static QRect filledRect(const QRect &bar, int percent, Qt::Orientation orientation);
};

// Takes texts of the form "percentage;text;colour", with "gray" or "black" as the colour.
class ProgressBarDelegate : public QStyledItemDelegate, public ProgressBarPainter {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};
