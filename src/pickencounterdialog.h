// Picks a prepared encounter of the library.
#pragma once

#include <QAbstractTableModel>

#include "picktabledialog.h"

class PreparedEncounter;
class QComboBox;
class QTableView;

class PickEncounterModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { NameColumn, LevelColumn, XPColumn, DescriptionColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void attachTo(QTableView *view);
    // Hides the rows that don't match. An empty adventure, like "All Adventures", stands for all.
    void setFilter(const QString &filter, const QString &adventure);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void hideRows();

    QString m_filter;
    QString m_adventure;
    QTableView *m_view = nullptr;
};

class PickEncounterDialog : public PickTableDialog {
    Q_OBJECT

public:
    // What exec() returns, 0 for Cancel.
    enum Result { Add = 3, AddHidden = 4, Set = 5, SetHidden = 7 };

    // Reads from the running encounter which buttons make sense.
    explicit PickEncounterDialog(QWidget *parent = nullptr);

    // Null when nothing is selected.
    const PreparedEncounter *selectedEncounter() const;

private Q_SLOTS:
    void onFilterChanged(QObject *object) override;
    void onEncounterAdventureSelected(int index);

private:
    static QList<Button> offeredButtons();

    PickEncounterModel m_model;
    QComboBox *m_adventures = nullptr;
};
