// A creature panel of the DM's Display.
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

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
    // Where creatureSelectionChanged() reads the selection.
    void setSelection(std::function<QList<Creature *>()> selection)
    {
        m_selection = std::move(selection);
    }
    // All texts are built again on the next tick.
    void refresh();
    // Small enough for any screen.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // As in CreatureDisplay.
    void doSetAliasShown(const QList<Creature *> &creatures, bool show);
    void doEditAlias(const QList<Creature *> &creatures);
    // The selection was read. The creature is the only one in it, or null.
    void doSingleChosen(Creature *creature);

public Q_SLOTS:
    // Shows the selected creatures.
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
    std::function<QList<Creature *>()> m_selection;
};
