// The log as a list: an arrow at the position, undone events in grey, a click jumps there.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QPointer>

class History;
class QTableView;

class EventListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit EventListModel(QObject *parent = nullptr);

    // The view isn't owned, and needs this model set by the caller.
    void setView(QTableView *view);
    // Follows the running History. To be called again when another one takes its place.
    void attachHistory();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

public Q_SLOTS:
    void onHistoryChanged();
    void onInitListClicked(const QModelIndex &index);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void syncRows();
    void drawAnew();
    void showPosition();

    QPointer<History> m_history;
    QPointer<QTableView> m_view;
    QIcon m_arrowIcon;
    QIcon m_noIcon;
    int m_rows = 0;
};
