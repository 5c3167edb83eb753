// The hub through which distant parts of the program meet without knowing each other.
#pragma once

#include <QObject>

class Creature;

class SwitchBoard : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void doCreatureUpdated(Creature *creature);
    void doCreatureEffectsChanged(Creature *creature);
    // Between these two the state is in flux: don't redraw.
    void doDisableWidgetDisplay();
    void doEnableWidgetDisplay();
    // Every 600 milliseconds while the windows are shown.
    void doRefreshTimer();
};

SwitchBoard *switchBoard();
