// The table of the Player's Display, which sets its type as large as its content allows.
#pragma once

#include <QHash>
#include <QTableView>

#include <array>

class Creature;
class PlayersHealthDelegate;
class PlayersListModel;

// Never shows a scroll bar nor half a row: where the rows don't fit, those around the current one
// are shown, and where there is room for no more than one, no header.
class PlayersView : public QTableView {
    Q_OBJECT

public:
    // Pixels at a zoom of 100 per cent, as all sizes of type here.
    static constexpr int SmallestFont = 14;
    static constexpr int LargestFont = 28;

    explicit PlayersView(QWidget *parent = nullptr);

    void attach(PlayersListModel *model);

    int fontSize() const { return m_fontSize; }
    // 0 means scaling.
    int fixedFontSize() const { return m_fixedFontSize; }
    // 0 turns on scaling, 1 fixes the present size, any other value fixes that size.
    void setFontMode(int mode);
    void setZoom(int percent);
    // Takes the largest type with which header and rows are lower than `height` and the contents
    // narrower than `width`, in pixels of the screen.
    void fit(int width, int height);
    // After a change of which rows there are.
    void fitRows();
    // After a change of what any row says.
    void fitAnew();
    // After a change of what one row says.
    void fitRow(int row);
    // Brings the row into view with those around it.
    void showRow(int row);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using Widths = std::array<int, 3>; // of a row's three cells, in pixels of the screen

    int pixels(qreal size) const;
    QFont fontOfSize(int size) const;
    int heightOfRow(int size) const;
    int headerHeight(int size) const;
    Widths measureRow(int row, int size);
    Widths contentWidths(int size);
    bool fitsAt(int size, int width, int height);
    void fitHeader();
    void applySize(int size);
    void applyWidths();

    PlayersListModel *m_model = nullptr;
    PlayersHealthDelegate *m_healthDelegate;
    int m_lastWidth = -1;
    int m_lastHeight = -1;
    int m_fixedFontSize = 0;
    int m_fontSize = SmallestFont;
    int m_zoom = 100;
    int m_shownRow = -1;
    QHash<const Creature *, Widths> m_widths; // of the rows that were measured in m_measuredSize
    int m_measuredSize = 0;
};
