// The docks of the DM's Display: what stands in them, which of them the DM has closed, and how they
// give way to a form.
#pragma once

#include <QHash>
#include <QObject>

class CreatureWidget;
class EffectListModel;
class PlayersPreview;
class QAction;
class QDockWidget;
class QMainWindow;
class QWidget;

// Dock and contents follow the running Encounter and History. All widgets belong to the window.
class DockLayout : public QObject {
    Q_OBJECT

public:
    enum Dock { CurrentDock, SelectedDock, HistoryDock, EffectsDock, PlayersViewDock, DockCount };

    // Made after the initiative list, so that the list follows a change of the encounter first and
    // the panels then find the right selection.
    explicit DockLayout(QMainWindow *window);

    CreatureWidget *currentPanel() const { return m_currentPanel; }
    CreatureWidget *selectedPanel() const { return m_selectedPanel; }
    // The effects of the selected creature; none while several are selected.
    EffectListModel *effects() const { return m_effects; }
    PlayersPreview *playersPreview() const { return m_playersPreview; }
    // The action that shows and hides a dock.
    QAction *toggle(Dock dock) const;
    QList<QAction *> toggles() const;
    // Notes as the DM's wish whether the dock is hidden now.
    void rememberHidden(Dock dock);

    // Takes from the docks beside the centre what a form there lacks in width, in pixels; widen()
    // gives it back.
    void narrow(int lack);
    void widen();
    void raiseFloating();
    // Floating docks go with the windows of the table, and their toggles do nothing elsewhere.
    void follow(bool isTableActive);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QDockWidget *add(Dock dock, const QString &name, const QString &title, QWidget *content,
                     Qt::DockWidgetArea area);
    QWidget *createHistoryList();
    QWidget *createEffectsList();
    void connectPanels();
    // Those on either side of the centre.
    QList<QDockWidget *> sideDocks() const;

    QMainWindow *m_window;
    QDockWidget *m_docks[DockCount] = {};
    bool m_isOff[DockCount] = {}; // the DM has closed the dock
    CreatureWidget *m_currentPanel;
    CreatureWidget *m_selectedPanel;
    EffectListModel *m_effects = nullptr;
    PlayersPreview *m_playersPreview;
    QHash<QDockWidget *, int> m_widths; // of the docks that gave way to a form
};
