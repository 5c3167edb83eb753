// The DM's Display: the place where what the DM wants turns into events.
#pragma once

#include <QIcon>
#include <QMainWindow>
#include <QSet>
#include <memory>

#include "coreobjects.h"
#include "creaturestate.h"
#include "dialoghost.h"
#include "windowinterface.h"
#include "windowsanddialogs.h"

class CreatureList;
class CreatureListModel;
class CreatureTableView;
class CreatureWidget;
class EffectListModel;
class EventListModel;
class FlatDialog;
class InitiativeDialog;
class LookOnlyBar;
class PreparedEncounter;
class QDockWidget;
class QLabel;
class QSpinBox;
class QStackedWidget;
class QTimer;
class ResizableScrollArea;
class TurnCycle;

// Creates the objects of the core, holds the selection of the initiative list, and runs one flow
// for each action: ask if need be, make an event, hand it to the history. It never changes a
// creature by itself.
class MainWindow : public QMainWindow,
                   public WindowsAndDialogs,
                   public WindowInterface,
                   public DialogHost {
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    // Saves the window's geometry and state. The core's objects go if shutDown() hasn't run.
    ~MainWindow() override;

    // Empties the encounter and deletes the core's objects; the window itself stays, and shows
    // nothing. Nothing but the destructor may follow.
    void shutDown();

    // --- selection of the initiative list: row numbers, in ascending order ---
    void setSelection(const QSet<int> &rows);
    bool isRowSelected(int row) const;
    QList<int> selectedRows() const;
    // Rows that hold no creature are passed over.
    QList<Creature *> selectedCreatures() const;
    // Selected rows up to the first that holds no creature.
    int selectedCount() const;
    // The i-th of the selection, or null.
    Creature *selectedCreature(int i) const;

    // --- dialogs in place of the initiative list ---
    QWidget *hostWindow() override { return this; }
    void setFlatDialog(const QString &title, FlatDialog *dialog) override;
    void showFlatWidget(QWidget *widget, bool fixed) override;
    FlatDialog *activeDialog() const override { return m_activeDialog; }
    void showInCurrentPanel(Creature *creature) override;

    void focusHPBox();
    // -1 is up in the list, 1 down; the selection moves with its creatures.
    void moveInitiative(int delta);
    // Shows or hides the aliases of those creatures that have one and don't do so yet.
    void setAliasShown(const QList<Creature *> &creatures, bool show);
    // Asks for an alias, or for its end, and sets it for all of them.
    void editAlias(const QList<Creature *> &creatures);
    // The turn passes on first if the current creature is among them and others stay.
    void removeCreatures(const QList<Creature *> &creatures);
    void showSelectionHelp();
    // The words of the rule system changed.
    void updateTerms();

    // --- what the core asks for ---
    void showMessage(const QString &title, const QString &text) override;
    bool askMessage(const QString &title, const QString &text, const QString &button) override;
    FolderAnswer askFolder(const QString &title, const QString &text,
                           const QString &button) override;
    void refreshEncounterActions() override;
    void refreshHistoryActions() override;
    void refreshJumpInAction() override;
    void refreshInitiativeList() override;
    void setRoundText(const QString &html) override;
    void setEncounterText(const QString &html) override;
    void setLogBehind(bool behind) override;
    void setLookOnly(const QString &reason) override;
    void clearSelection() override;
    void tellReadOnly() override;
    void refreshCharacterList() override;
    void refreshTerms() override;
    void hideForReplay() override;
    void showAfterReplay() override;
    int partySize() const override;

Q_SIGNALS:
    // Forwarded to the SwitchBoard.
    void doCreatureEffectsChanged(Creature *creature);

public Q_SLOTS:
    void onAbout();
    void onSetRoot();
    // Reads the folder that was only looked at anew, to write to it.
    void onTakeOver();
    void onNewHistory();
    void onTruncateHistory();
    void activateMainWindow();
    void toggleCurrentWindow();
    void toggleSelectedWindow();
    void toggleHistoryWindow();
    void toggleEffectsWindow();
    void onFocusChanged(QWidget *old, QWidget *now);
    void onPickParty();
    void onLoadEncounter();
    void onAddMonster();
    void onSetAlias();
    void onRemoveCreatures();
    void onStartStopEncounter();
    void onNextTurn();
    void onStepBack();
    void onStepForward();
    void onAddConditionOrEffect();
    // Takes the effect at `index` off the first selected creature; a bad index does nothing.
    void removeCondEffect(int index);
    void onShowAndHide();
    void onDelay();
    void onReady();
    void onJumpIn();
    void onUpInitiative();
    void onDownInitiative();
    void onShortRest();
    void onExtendedRest();
    void onHPValueChanged();
    void onHit();
    void onHeal();
    void onSurge();
    void onSetTempHP();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Actions {
        QAction *setRoot = nullptr;
        QAction *newHistory = nullptr;
        QAction *truncateHistory = nullptr;
        QAction *dmsWindow = nullptr;
        QAction *pickParty = nullptr;
        QAction *loadEncounter = nullptr;
        QAction *addMonster = nullptr;
        QAction *stepBack = nullptr;
        QAction *stepForward = nullptr;
        QAction *startStop = nullptr;
        QAction *nextTurn = nullptr;
        QAction *conditions = nullptr;
        QAction *showHide = nullptr;
        QAction *setAlias = nullptr;
        QAction *remove = nullptr;
        QAction *delay = nullptr;
        QAction *ready = nullptr;
        QAction *jumpIn = nullptr;
        QAction *upInitiative = nullptr;
        QAction *downInitiative = nullptr;
        QAction *shortRest = nullptr;
        QAction *extendedRest = nullptr;
        QAction *quit = nullptr;
        QAction *about = nullptr;
        QAction *hit = nullptr;
        QAction *heal = nullptr;
        QAction *surge = nullptr;
        QAction *setTempHP = nullptr;
    };
    // Icons of the actions that change their face.
    struct Icons {
        QIcon play, stop, hide, show, surge, surgeInUse;
    };
    struct ActionRow;

    // --- construction (mainwindowactions.cpp) ---
    void createCentre();
    void createActions();
    QAction *createAction(const ActionRow &row);
    void createToolBars();
    // Puts them into as many rows as the window's width asks for.
    void breakToolBars();
    void createStatusBar();
    QDockWidget *createDock(const QString &name, const QString &title, QWidget *content,
                            Qt::DockWidgetArea area);
    void createDocks();
    void connectList();
    void connectPanels();
    void createMenus();
    void connectSignals();
    void restoreLayout();
    // Those on either side of the centre.
    QList<QDockWidget *> sideDocks() const;
    // Takes from the docks what a form lacks in width; widenDocks() gives it back.
    void narrowDocks(const QWidget &form);
    void widenDocks();
    void raiseFloatingDocks();

    // --- states of the actions (mainwindowstates.cpp); all off while a dialog is active ---
    void updateHistoryActions();
    void updateEncounterActions();
    void updateJumpInAction();
    void updateRosterActions();
    void updateHealthActions();
    void updateStartStopAction();
    void updateShowHideAction();
    void updateActions();
    // Commands that make an event, or change the log, are open to the user.
    bool canCommand() const;
    bool canSpendSurge() const;

    // --- turn cycle (turncommands.cpp) ---
    // With the form of the saving throws, over which the window may be gone.
    TurnCycle turnCycle();

    // --- newcomers ---
    // Asks for the initiative of creatures that join a running encounter, and gives what they had
    // before. False when the DM cancelled.
    bool rollNewcomers(const CreatureList &newcomers, QList<CreatureItem> &oldItems);

    void addEncounter(const PreparedEncounter &encounter, bool hidden);
    void replaceEncounter(const PreparedEncounter &encounter, bool hidden);
    void endHealthFlow();

    std::unique_ptr<CoreObjects> m_core;
    Actions m_actions;
    Icons m_icons;
    CreatureListModel *m_listModel = nullptr;
    CreatureTableView *m_table = nullptr;
    EventListModel *m_eventModel = nullptr;
    EffectListModel *m_effectModel = nullptr;
    CreatureWidget *m_currentPanel = nullptr;
    CreatureWidget *m_selectedPanel = nullptr;
    QDockWidget *m_currentDock = nullptr;
    QDockWidget *m_selectedDock = nullptr;
    QDockWidget *m_historyDock = nullptr;
    QDockWidget *m_effectsDock = nullptr;
    // The DM has closed that dock.
    bool m_currentDockOff = false;
    bool m_selectedDockOff = false;
    bool m_historyDockOff = false;
    bool m_effectsDockOff = false;
    // Widths of the docks that gave way to a form.
    QHash<QDockWidget *, int> m_dockWidths;
    // The end of the program closes the floating docks ahead of the destructor.
    QByteArray m_stateAtClose;
    QStackedWidget *m_pages = nullptr;
    QLabel *m_dialogTitle = nullptr;
    ResizableScrollArea *m_dialogArea = nullptr;
    QSpinBox *m_hpBox = nullptr;
    QLabel *m_roundLabel = nullptr;
    QLabel *m_encounterLabel = nullptr;
    QLabel *m_logBehindLabel = nullptr;
    LookOnlyBar *m_lookOnlyBar = nullptr;
    QTimer *m_refreshTimer = nullptr;
    QSet<int> m_selection;
    FlatDialog *m_activeDialog = nullptr;
    // The HP box holds the value of a healing surge that "Spend Healing Surge" put there.
    bool m_surgeMode = false;
    // The history is being replayed: the windows are hidden and nothing is redrawn.
    bool m_replaying = false;
};
