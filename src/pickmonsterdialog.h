// Picks a monster of the library and asks for its ID and alias.
#pragma once

#include <QAbstractTableModel>

#include "picktabledialog.h"

class Creature;
class QLineEdit;
class QTableView;

class PickMonsterModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { NameColumn, LevelColumn, TypeColumn, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void attachTo(QTableView *view);
    // Hides the rows that don't match, and deleted monsters always.
    void setFilter(const QString &filter);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    // No filter that was applied, so that the first one always is, an empty one included.
    QString m_filter = QStringLiteral("x");
    QTableView *m_view = nullptr;
};

class PickMonsterDialog : public PickTableDialog {
    Q_OBJECT

public:
    // What exec() returns, 0 for Cancel.
    enum Result { Add = 3, AddHidden = 4 };

    explicit PickMonsterDialog(QWidget *parent = nullptr);

    // The creature for the encounter, made if need be, and the alias that was typed. Null when
    // nothing is selected.
    Creature *selectedMonster(QString &alias) const;

public Q_SLOTS:
    // Stays open, with a message, while an accepted monster has no ID.
    void done(int result) override;

private Q_SLOTS:
    void onFilterChanged(QObject *object) override;

private:
    QWidget *buildFields();
    QString selectedGroup() const;
    QString monsterId() const;

    PickMonsterModel m_model;
    QLineEdit *m_id = nullptr;
    QLineEdit *m_alias = nullptr;
};
