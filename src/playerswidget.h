// The panels around the list of the Player's Display.
#pragma once

#include <QPointer>
#include <QWidget>

#include "windowsanddialogs.h"

class Creature;
class FittedLabel;
class History;
class PlayersListModel;
class PortraitLabel;
class QListWidget;

class PlayersWidget : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    // Pixels at a zoom of 100 per cent.
    int fontSize() const { return m_fontSize; }
    // Brought into 14 to 28.
    void setFontSize(int size);
    // All sizes are multiplied by these per cent.
    void setZoom(int percent);

protected:
    int zoom() const { return m_zoom; }
    int pixels(qreal size) const;
    // Lays the panel out anew after a change of a size.
    virtual void fit() = 0;

private:
    int m_fontSize = 14;
    int m_zoom = 100;
};

// Whose turn it is.
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
    void clear();
    void showNext(const Creature *shown);

    PlayersListModel *m_model;
    PortraitLabel *m_portraitLabel;
    FittedLabel *m_nameLabel;
    FittedLabel *m_stateLabel;
    FittedLabel *m_hpLabel;
    FittedLabel *m_conditionLabel;
    FittedLabel *m_nextLabel;
    bool m_showsNext = false;
};

// The last kills as a gallery.
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

// The latest lines of the history, newest first.
class TickerWidget : public PlayersWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit TickerWidget(QWidget *parent = nullptr);
    ~TickerWidget() override;

    int lineCount() const { return m_lineCount; }

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

public Q_SLOTS:
    void onHistoryChanged();

protected:
    void fit() override;
    void resizeEvent(QResizeEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    int lineHeight() const;

    QListWidget *m_list;
    QPointer<History> m_history;
    int m_lineCount = 1;
};
