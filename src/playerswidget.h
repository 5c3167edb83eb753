// The common base of the panels around the list of the Player's Display.
#pragma once

#include <QWidget>

#include "playersview.h"

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
    static constexpr int SmallestFont = PlayersView::SmallestFont;
    static constexpr int LargestFont = PlayersView::LargestFont;
    // Line height as a multiple of a panel's type size, and the lines of a panel at the bottom.
    static constexpr qreal LineSpacing = 1.25;
    static constexpr int BottomLines = 5;
    static constexpr int Spacing = 5; // pixels at a zoom of 100 per cent, like EdgeMargin
    static constexpr int EdgeMargin = 2;

    int zoom() const { return m_zoom; }
    int pixels(qreal size) const;
    // Of a panel, in pixels of the screen: two of them fit beside the list at any zoom.
    int leastWidth() const;
    // Lays the panel out anew after a change of a size.
    virtual void fit() = 0;

private:
    int m_fontSize = SmallestFont;
    int m_zoom = 100;
};
