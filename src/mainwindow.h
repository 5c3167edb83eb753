// The DM's Display: the place where what the DM wants turns into events.
#pragma once

#include <QMainWindow>
#include <QSet>
#include <memory>

#include "coreobjects.h"
#include "dialoghost.h"
#include "windowinterface.h"
#include "windowsanddialogs.h"

class CreatureListModel;
class CreatureTableView;
class DockLayout;
class FormPage;
class HPBox;
class LookOnlyBar;
class MainWindowActions;
class LibraryWindow;
class PlayersDisplay;
class QLabel;
class QStackedWidget;
class QTimer;
class TurnCycle;

// Creates the objects of the core, holds the selection of the initiative list, and runs one flow
// for each action: ask if need be, make an event, hand it to the history. It never changes a
// creature by itself. The flows stand by subject in turn-, health-, roster-, effect-, history- and
// windowcommands.cpp.
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
    // They are marked by the current creature.
    void markByCurrent(const QList<Creature *> &creatures);
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
    // The first time with a hint.
    void activateManagerWindow();
    void activateCharacterWindow();
    // Nothing without a Player's Display.
    void onTogglePlayerWindow();
    void toggleCurrentWindow();
    void toggleSelectedWindow();
    void toggleHistoryWindow();
    void toggleEffectsWindow();
    void togglePlayersView();
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

private:
    // --- construction ---
    void createCentre();
    void createStatusBar();
    void connectSignals();
    void connectList();
    void connectDocks();
    void restoreLayout();

    // --- states of the actions (mainwindowstates.cpp); all off while a dialog is active ---
    void updateHistoryActions();
    void updateEncounterActions();
    void updateJumpInAction();
    void updateRosterActions();
    void updateHealthActions();
    void updateStartStopAction();
    void updateShowHideAction();
    void updatePlayersAction();
    bool isPlayersVisible() const;
    void updateActions();
    // The user may run commands that make an event or change the log.
    bool canCommand() const;
    bool canSpendSurge() const;

    // --- turn cycle (turncommands.cpp) ---
    // It asks by the dialog of saving throws. The window may be gone when it returns.
    TurnCycle turnCycle();

    // --- hit points (healthcommands.cpp) ---
    void endHealthFlow();

    std::unique_ptr<CoreObjects> m_core;
    // Null without one.
    std::unique_ptr<PlayersDisplay> m_players;
    std::unique_ptr<LibraryWindow> m_manager;
    std::unique_ptr<LibraryWindow> m_characters;
    bool m_managerHintShown = false;
    // The windows of the table, this one and the players', or those of the library.
    enum WindowGroup { TableGroup, LibraryGroup };
    WindowGroup m_windowGroup = TableGroup;
    // The Player's Display was open when the windows were hidden for a replay.
    bool m_wasPlayersVisible = false;
    MainWindowActions *m_actions = nullptr;
    CreatureListModel *m_listModel = nullptr;
    CreatureTableView *m_table = nullptr;
    DockLayout *m_docks = nullptr;
    // Taken when the window closes: the floating docks are closed before the destructor runs.
    QByteArray m_stateAtClose;
    QStackedWidget *m_pages = nullptr;
    FormPage *m_formPage = nullptr;
    HPBox *m_hpBox = nullptr;
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
