// The table of the initiative list, with its own rules of selection.
#pragma once

#include <QPersistentModelIndex>
#include <QTableView>

class CreatureTableView : public QTableView {
    Q_OBJECT

public:
    explicit CreatureTableView(QWidget *parent = nullptr);

    void scrollToRow(int row);
    // In ascending order.
    QList<int> selectedRows() const;

Q_SIGNALS:
    // A press and release of the left or right button on one cell. The second click of a double
    // click doesn't count: if the first one removed its row, it would hit the next one.
    void itemClicked(const QModelIndex &index);
    // The keyboard asks for the menu of the selection, which isn't empty.
    void menuRequested(const QPoint &globalPosition);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;
    void changeEvent(QEvent *event) override;

private:
    void softenSelectionColours();
    // Rows are high enough for a large font.
    void fitRowsToFont();
    void selectByMouse(const QModelIndex &index, const QMouseEvent &event) const;
    // The row that was added, or -1.
    int selectByKey(const QKeyEvent &event) const;
    void expandSelectionTo(int row) const;
    void selectOnly(int row) const;
    QItemSelection rowSelection(int first, int last) const;

    int m_lastPressX = 1000; // of the last press; nothing reads it yet
    QPersistentModelIndex m_pressed; // the cell whose release makes a click
    QPersistentModelIndex m_lastPressed; // invalid once its row has gone
};
