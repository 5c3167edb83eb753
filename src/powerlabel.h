// The headline of a power in a creature panel. A click ticks the power off as used, or takes the
// tick away.
#pragma once

#include <QCursor>
#include <QPointer>

#include "creature.h"
#include "panelrowlabel.h"

class QFrame;

// Does nothing while a dialog stands in the initiative list's place, nor for a power that can't be
// ticked.
class PowerLabel : public PanelRowLabel {
    Q_OBJECT

public:
    // `index` is the power's place in the creature's list as it is now; the label follows the
    // power's name if the list is read anew. Neither creature nor frame is owned; the frame is the
    // row whose colours change under the mouse, by `styleFlags` as of PanelRowStyle.
    PowerLabel(Creature *creature, int index, QFrame *frame, int styleFlags);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    Power *power() const;
    // Null when a click does nothing.
    Power *tickablePower() const;
    void showHeading(const Power &power, bool hovered);

    QPointer<Creature> m_creature;
    int m_index;
    QString m_name;
    QPointer<QFrame> m_frame;
    int m_styleFlags;
    QPoint m_bornUnder = QCursor::pos();
};
