// The main window's flows that put conditions on creatures and take them off.
#include "appendevent.h"
#include "creature.h"
#include "effectevents.h"
#include "mainwindow.h"

void MainWindow::onAddConditionOrEffect() { }

void MainWindow::removeCondEffect(int index)
{
    Creature *creature = selectedCreature(0);
    Effect *effect = creature ? creature->effectAt(index) : nullptr;
    if (effect)
        appendEvent<RemoveOnGoingEvent>(creature, effect);
}
