#include "creatureheaderview.h"

CreatureHeaderView::CreatureHeaderView(QWidget *parent) : QHeaderView(Qt::Horizontal, parent) { }

void CreatureHeaderView::contextMenuEvent(QContextMenuEvent *)
{
    Q_EMIT doRightClicked();
}

#include "moc_creatureheaderview.cpp"
