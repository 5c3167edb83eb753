// The panel of the latest lines of the history.
#pragma once

#include <QPointer>

#include "playerswidget.h"
#include "windowsanddialogs.h"

class History;
class QListWidget;

// Newest first, with the names that the players may know.
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
