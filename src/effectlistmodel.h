// The effects of one creature as a list, each with an icon that removes it when clicked.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QPointer>

class Creature;
class Effect;
class QTableView;

class EffectListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { TrashColumn, DescriptionColumn, ColumnCount };

    explicit EffectListModel(QObject *parent = nullptr);

    // Sets the view up with this model. The view isn't owned.
    void attachTo(QTableView *view);
    // Null empties the list. The creature isn't owned and may go at any time.
    void setCreature(Creature *creature);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    // The effect in this row is to go.
    void doRemoveEffect(int row);

public Q_SLOTS:
    void effectListChanged(Creature *creature);
    void internalClicked(const QModelIndex &index);

private:
    QString descriptionText(int row) const;
    // Tells the view which rows came and went since it was last told, and redraws the others.
    void syncRows();

    QPointer<QTableView> m_view;
    QPointer<Creature> m_creature;
    QList<Effect *> m_rows; // compared, never dereferenced: an effect may be gone
    QIcon m_trashIcon;
};
