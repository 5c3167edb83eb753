// The column header of the initiative list: a right click opens its menu too.
#pragma once

#include <QHeaderView>

class CreatureHeaderView : public QHeaderView {
    Q_OBJECT

public:
    explicit CreatureHeaderView(QWidget *parent = nullptr);

Q_SIGNALS:
    void doRightClicked();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
};
