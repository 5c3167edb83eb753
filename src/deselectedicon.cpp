#include "deselectedicon.h"

#include "mainwindow.h"
#include "paths.h"
#include "windows.h"

void DeselectedIcon::paint(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    QStyleOptionViewItem icon = option;
    icon.state.setFlag(QStyle::State_HasFocus, false);
    if (dataReadOnly || (theMainWindow && theMainWindow->activeDialog()))
        icon.state.setFlag(QStyle::State_Enabled, false);
    QStyledItemDelegate::paint(painter, icon, index);
}

#include "moc_deselectedicon.cpp"
