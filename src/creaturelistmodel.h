// The initiative list: one row for each creature of the encounter, and what clicks on it do.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QPointer>
#include <QSet>

class Creature;
class CreatureTableView;
class Encounter;
class QItemSelection;

// Every answer is worked out from the running Encounter when it is asked for. The model only keeps
// which creature stood in which row when the view was last told, so that selection and scrolling
// follow a creature that moves.
class CreatureListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column {
        IconColumn, // always the first
        NameColumn,
        InitiativeColumn,
        DefencesColumn,
        HealthColumn,
        EffectsColumn, // always the last
        ColumnCount,
        // Answered, but beyond the columns that a view shows.
        DescriptionColumn = ColumnCount
    };

    explicit CreatureListModel(QObject *parent = nullptr);
    // Writes the columns' settings, so it must go before its view.
    ~CreatureListModel() override;

    // Sets the view up with this model, header, delegates and the saved columns, and follows the
    // running Encounter. The view isn't owned.
    void attachTo(CreatureTableView *view);
    void clearSelection();
    // True when the key was used up: Escape clears the selection.
    bool handleKey(int key);
    // Selects exactly these rows.
    void setSelectedRows(const QList<int> &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void doSelectionChanged(const QSet<int> &rows);
    // What clicks and menus ask for; the list changes no creature by itself.
    void doRemoveCreatures(const QList<Creature *> &creatures);
    void doAddEffect(); // to the selection
    void doMark(const QList<Creature *> &creatures); // by the current creature
    void doMoveInitiative(int delta); // of the selection: -1 is up in the list, 1 down
    void doSetAliasShown(const QList<Creature *> &creatures, bool show);
    void doEditAlias(const QList<Creature *> &creatures);
    void doFocusHPBox();
    void doShowHelp();

public Q_SLOTS:
    void onInternalSelectionChanged(const QItemSelection &selected,
                                    const QItemSelection &deselected);
    void onHeaderMoved(int logicalIndex, int oldVisualIndex, int newVisualIndex);
    void onInitHeaderClicked();
    void onInitListPressed(const QModelIndex &index);
    void onInitListClicked(const QModelIndex &index);
    void onInternalDoubleClick(const QModelIndex &index);
    void onCurrentCreatureChanged();
    void onCreatureInListUpdated();

private:
    // --- columns and cells (creaturelistcolumns.cpp) ---
    struct ColumnSettings;
    static const ColumnSettings columns[];

    QVariant displayText(const Creature *creature, int column) const;
    QIcon stateIcon(const Creature *creature) const;
    QString toolTip(const Creature *creature, int column) const;
    QVariant spokenText(const Creature *creature, int column) const;
    QString nameText(const Creature *creature) const;
    QString initiativeText(const Creature *creature) const;
    QString defencesText(const Creature *creature) const;
    QString healthText(const Creature *creature) const;
    QString effectsText(const Creature *creature) const;
    QString descriptionText(const Creature *creature) const;
    bool isCurrent(const Creature *creature) const;

    void setUpColumns();
    void placeColumns();
    void showColumn(int column, bool show);
    void writeSettings();

    // --- view and clicks ---
    void connectEncounter();
    void connectView();
    void reportSelection();
    bool isRowSelected(int row) const;
    QList<Creature *> selectedCreatures() const;
    // The press of the last click asked for the menu.
    bool pressedForMenu() const;
    // What can be done with the selection.
    void openContextMenu(const QPoint &globalPosition);

    // Brings the rows that the view knows in line with the encounter.
    void syncRows();
    void applyRows(const QList<Creature *> &rows);
    void removeMissingRows(const QList<Creature *> &rows);
    void insertNewRows(const QList<Creature *> &rows);
    void reorderRows(const QList<Creature *> &rows);
    void setFrozen(bool frozen);
    void refresh();

    QPointer<Encounter> m_encounter;
    QPointer<CreatureTableView> m_view;
    QList<Creature *> m_rows; // compared, never dereferenced: a creature may be gone
    Qt::MouseButtons m_pressedButtons;
    Qt::KeyboardModifiers m_pressedModifiers;
    bool m_movingHeader = false;
    bool m_syncing = false;
    bool m_frozen = false; // a replay or a load runs
    bool m_refreshPending = false; // one repainting for all changes of a command
    bool m_scrollToCurrent = false;
    QIcon m_currentIcon;
    QIcon m_noIcon;
    QIcon m_delayIcon;
    QIcon m_readyIcon;
    QIcon m_hiddenIcon;
    QIcon m_deadIcon;
};
