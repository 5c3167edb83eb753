// The Player's Display: the second window, which is turned to the players and shows nothing that
// the DM keeps to herself.
#pragma once

#include <QMainWindow>

#include "windows.h"
#include "windowsanddialogs.h"

class FullScreen;
class KeepAwake;
class LastKillWidget;
class PlayersCurtain;
class PlayersListModel;
class PlayersView;
class QMenu;
class TickerWidget;
class YourTurnWidget;

// Reads the running Encounter and History and changes neither. Made behind the core's objects,
// which may go before it. Hidden at first; closing hides it.
class PlayersWindow : public QMainWindow, public WindowsAndDialogs, public PlayersDisplay {
    Q_OBJECT

public:
    explicit PlayersWindow(QWidget *parent = nullptr);
    ~PlayersWindow() override;

    QWidget *displayWindow() override { return this; }

    PlayersListModel *listModel() const { return m_listModel; }
    PlayersView *view() const { return m_view; }
    YourTurnWidget *yourTurn() const { return m_yourTurn; }
    QList<QAction *> dockToggles() const;
    // The context menu as it is now. The caller deletes it.
    QMenu *createPopupMenu() override;

    // Shows the creature and the rich text in "Your Turn!", until something changes who is current.
    // Null stands for the creature whose turn it is, and so does a creature that they never see,
    // without the message.
    void setInitiativeMessage(Creature *creature, const QString &message) override;
    // The last of each is kept in the settings.
    void setFontMode(int mode);
    void setShowDamage(bool show);
    void setShowNext(bool show);
    // Percent, brought into 100 to 400: all sizes are multiplied by it.
    void setZoom(int percent);
    int zoom() const { return m_zoom; }
    bool isCurtained() const override;
    // Empty while it isn't in full screen.
    QString fullScreenName() const;

public Q_SLOTS:
    // Everything anew from encounter, history and terms.
    void refresh() override;
    void setCurtained(bool curtained) override;
    void toggleCurtain() { setCurtained(!isCurtained()); }
    void toggleFullScreen();

Q_SIGNALS:
    // The window was shown or hidden, by whatever means.
    void doShownChanged(bool shown);
    void doCurtainChanged(bool curtained);

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    QDockWidget *addDock(const QString &name, const QString &title, QWidget *content,
                         Qt::DockWidgetArea area);
    void addKeys();
    void addKey(const QList<QKeySequence> &keys, void (PlayersWindow::*slot)());
    void openMenuByKey();
    void fillMenu(QMenu *menu);
    void addZoomMenu(QMenu *menu);
    void addScreensMenu(QMenu *menu);
    void applyZoom();
    // With docks that the DM arranged, their heights are multiplied.
    void arrangeDocks(qreal scale = 1);
    void zoomIn();
    void zoomOut();
    void zoomReset();
    void leaveFullScreen();
    void updateKeepAwake();
    void restoreSettings();
    void writeSettings();

    PlayersListModel *m_listModel;
    PlayersView *m_view;
    YourTurnWidget *m_yourTurn;
    LastKillWidget *m_lastKills;
    TickerWidget *m_ticker;
    QList<QDockWidget *> m_docks;
    bool m_isArrangedByDM = false; // the docks
    PlayersCurtain *m_curtain;
    FullScreen *m_fullScreen;
    KeepAwake *m_keepAwake;
    int m_zoom = 100;
};
