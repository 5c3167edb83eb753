// The panel of the last kills.
#pragma once

#include <QStringList>

#include "playerswidget.h"
#include "windowsanddialogs.h"

class FittedLabel;
class PlayersListModel;
class PortraitLabel;

// A gallery of as many as there is room for.
class LastKillWidget : public PlayersWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit LastKillWidget(PlayersListModel *model, QWidget *parent = nullptr);

    // How many there is room for.
    int visibleCount() const { return m_visibleCount; }

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

public Q_SLOTS:
    void onCreatureChanged();

protected:
    void fit() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int portraitSide() const; // pixels of the screen
    void fitNames();

    PlayersListModel *m_model;
    int m_slotCount = 10;
    int m_visibleCount = 0;
    QStringList m_killers; // of the slots that are used
    QList<PortraitLabel *> m_portraits;
    QList<FittedLabel *> m_names;
};
