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
    // A creature's text or numbers may differ by now from what the history knows of them.
    void doRecordChanged();
    // The log is to hear of what was changed: before a creature's file is written, and after
    // characters went back to what their files hold.
    void doTellHistory();
    // A creature began or ceased to delay or to be ready.
    void doWaitingChanged();
    // A creature's hidden flag or alias changed.
    void doNameShownChanged();
    // Between these two the state is in flux: don't redraw.
    void doDisableWidgetDisplay();
    void doEnableWidgetDisplay();
    // Every 600 milliseconds while the windows are shown.
    void doRefreshTimer();
};

SwitchBoard *switchBoard();
