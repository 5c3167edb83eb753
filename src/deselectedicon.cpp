#include "deselectedicon.h"

#include "dialoghost.h"
#include "paths.h"

void DeselectedIcon::paint(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    QStyleOptionViewItem icon = option;
    icon.state.setFlag(QStyle::State_HasFocus, false);
    if (dataReadOnly || activeFlatDialog())
        icon.state.setFlag(QStyle::State_Enabled, false);
    QStyledItemDelegate::paint(painter, icon, index);
}

#include "moc_deselectedicon.cpp"
