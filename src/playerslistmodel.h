// The list of the Player's Display: the visible creatures in their order.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QMap>
#include <QPointer>

class Creature;
class Encounter;
class PlayersView;

// Follows the running Encounter, which may go before the model.
class PlayersListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    // A fourth column, the description, is answered but never shown.
    enum Column { NameColumn, HealthColumn, EffectsColumn, DescriptionColumn };
    static constexpr int ColumnCount = 3;

    explicit PlayersListModel(QObject *parent = nullptr);

    // Not owned.
    void attachTo(PlayersView *view);

    bool isEncounterRunning() const;
    // -1 where the players see nobody as current. A hidden creature that is current leaves the
    // arrow at the visible one before it.
    int currentRow() const { return m_currentRow; }
    Creature *currentCreature() const { return m_currentCreature; }
    const QList<Creature *> &creatures() const { return m_creatures; }
    // The visible living creature whose turn follows that of the current one; null without another.
    Creature *nextCreature() const;
    // Dead monsters by the order of the blows that killed them.
    const QMap<int, Creature *> &kills() const { return m_kills; }
    bool showsDamage() const { return m_showDamage; }
    // Whether damage and heals of the monsters stand on their bars.
    void setShowDamage(bool show);
    // Reads the encounter again, also where nothing tells of a change.
    void refresh();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    // Who is current, who is killed, or the order.
    void doCurrentChanged();

public Q_SLOTS:
    void onCreatureCountChanged();
    void onCurrentCreatureChanged();
    // Null stands for all.
    void onCreatureInListUpdated(Creature *creature = nullptr);
    void onDisableWidgetDisplay();
    void onEnableWidgetDisplay();
    void onNameShownChanged();

private:
    // False when what the players see is as it was.
    bool readEncounter();
    void matchRowCount(const QList<Creature *> &creatures);
    void applyRows(const QList<Creature *> &creatures);
    int findCurrentRow() const;
    void refreshCurrent();
    void noteRowChanged(int row, const QList<int> &roles = {});
    void forgetEncounter();
    QString displayText(const Creature *creature, int column) const;
    QString healthText(const Creature *creature) const;
    QIcon stateIcon(int row) const;
    QVariant spokenText(const Creature *creature, int column) const;
    QVariant spokenState(int row, int column) const;
    QVariant foreground(const Creature *creature, int column) const;

    const QPointer<Encounter> m_encounter;
    PlayersView *m_view = nullptr;
    QList<int> m_rows; // of the Encounter
    QList<Creature *> m_creatures; // in those rows
    QMap<int, Creature *> m_kills;
    int m_currentRow = -1;
    Creature *m_currentCreature = nullptr;
    bool m_showDamage = true;
    bool m_displayDisabled = false;
    QIcon m_currentIcon;
    QIcon m_noIcon;
    QIcon m_delayIcon;
    QIcon m_readyIcon;
    QIcon m_hiddenIcon;
};

// The effects of a creature in one line, with the names that the players may know.
QString playersEffectsText(const Creature *creature);
