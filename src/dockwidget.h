// A dock of the DM's Display.
#pragma once

#include <QDockWidget>

// Nothing but a name of its own, by which style sheets and searches tell it from other docks.
class DockWidget : public QDockWidget {
    Q_OBJECT

public:
    using QDockWidget::QDockWidget;
};
