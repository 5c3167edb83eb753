#include "playerswidget.h"

#include <QScreen>

#include "fittedtext.h"

void PlayersWidget::setFontSize(int size)
{
    m_fontSize = qBound(SmallestFont, size, LargestFont);
    QFont sized = font();
    sized.setPixelSize(pixels(m_fontSize));
    if (sized != font())
        setFont(sized);
}

void PlayersWidget::setZoom(int percent)
{
    m_zoom = percent;
    setFontSize(m_fontSize);
    updateGeometry();
    fit();
}

int PlayersWidget::leastWidth() const
{
    return qMin(pixels(SmallestFont * 8), screen()->size().width() / 5);
}

int PlayersWidget::pixels(qreal size) const
{
    return zoomed(size, m_zoom);
}

#include "moc_playerswidget.cpp"
