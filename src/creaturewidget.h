// A creature panel of the DM's Display.
#pragma once

#include <QPointer>
#include <QWidget>

#include "creature.h"
#include "windowsanddialogs.h"

class CreatureDisplay;

class CreatureWidget : public QWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    // `showEffects`: the head shows the creature's conditions and effects as well.
    explicit CreatureWidget(bool showEffects, QWidget *parent = nullptr);

    // Creatures aren't owned and may go at any time. Null shows an empty panel.
    void setCreature(Creature *creature);
    void setCreatures(const QList<Creature *> &creatures);
    // Has all texts built anew on the next tick.
    void refresh();
    // Small enough for any screen.
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    // Shows the selected creatures of the main window, and the effects of the only one.
    void creatureSelectionChanged();
    void currentCreatureChanged();
    void currentDetailsChanged(Creature *creature);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QPointer<Creature> m_single;
    QList<QPointer<Creature>> m_several;
    CreatureDisplay *m_display;
};
