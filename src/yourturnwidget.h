// The panel that says whose turn it is.
#pragma once

#include "playerswidget.h"
#include "windowsanddialogs.h"

class Creature;
class FittedLabel;
class PlayersListModel;
class PortraitLabel;

class YourTurnWidget : public PlayersWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit YourTurnWidget(PlayersListModel *model, QWidget *parent = nullptr);

    using QWidget::show;
    // Null stands for the model's current creature; without one the panel is blank. `message` is
    // rich text behind the state.
    void show(Creature *creature, const QString &message);
    bool showsNext() const { return m_showsNext; }
    // One more line, with the creature whose turn follows.
    void setShowNext(bool show);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

public Q_SLOTS:
    void onCurrentChanged();
    void onCreatureUpdated(Creature *creature);

protected:
    void fit() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int lineCount() const;
    int typeFor(int lineSpace, int textWidth) const;
    void clear();
    void showNext();

    PlayersListModel *m_model;
    PortraitLabel *m_portraitLabel;
    FittedLabel *m_nameLabel;
    FittedLabel *m_stateLabel;
    FittedLabel *m_hpLabel;
    FittedLabel *m_conditionLabel;
    FittedLabel *m_nextLabel;
    bool m_showsNext = false;
    bool m_showsCurrent = false; // and not a creature that a form asks about
};
