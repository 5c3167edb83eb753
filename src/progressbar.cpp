#include "progressbar.h"

#include <QApplication>
#include <QLinearGradient>
#include <QPainter>

namespace {

constexpr int BloodiedBelow = 51; // percent: from here down the bar is red
constexpr int SmallestText = 8; // pixels

// White, the colour, black. It is longer than the bar is thick, so that only its light end lies in
// the bar and black text there stays readable.
QLinearGradient barGradient(const QRect &bar, const QColor &colour, bool grey,
                            Qt::Orientation orientation)
{
    const bool horizontal = orientation == Qt::Horizontal;
    const int thickness = horizontal ? bar.height() : bar.width();
    const int length = (grey ? 3 : 6) * thickness;
    const QPoint direction = horizontal ? QPoint(0, 1) : QPoint(1, 0);
    QLinearGradient gradient(bar.topLeft(), bar.topLeft() + direction * length);
    gradient.setColorAt(0, Qt::white);
    gradient.setColorAt(0.7, colour);
    gradient.setColorAt(1, Qt::black);
    return gradient;
}

// The font in a size with which the text fits into the bar, as far as it stays readable.
QFont fontForBar(const QFont &font, const QString &text, const QSize &bar)
{
    QFont fitting = font;
    fitting.setPixelSize(qMax(SmallestText, qMin(QFontInfo(font).pixelSize(), bar.height() - 2)));
    while (fitting.pixelSize() > SmallestText
           && QFontMetrics(fitting).horizontalAdvance(text) > bar.width() - 2)
        fitting.setPixelSize(fitting.pixelSize() - 1);
    return fitting;
}

} // namespace

QRect ProgressBarPainter::barRect(const QRect &cell)
{
    return {cell.left() + 5, cell.top() + 5, cell.width() - 9, cell.height() - 9};
}

QRect ProgressBarPainter::filledRect(const QRect &bar, int percent, Qt::Orientation orientation)
{
    const int share = qMin(qAbs(percent), 100);
    QRect filled = bar;
    if (orientation == Qt::Horizontal) {
        filled.setWidth(bar.width() * share / 100);
        if (percent < 0)
            filled.moveRight(bar.right());
    } else {
        filled.setHeight(bar.height() * share / 100);
        if (percent < 0)
            filled.moveBottom(bar.bottom());
    }
    return filled;
}

void ProgressBarPainter::drawBar(QPainter *painter, const QRect &cell, int percent, bool grey,
                                 Qt::Orientation orientation) const
{
    const QRect bar = barRect(cell);
    if (bar.isEmpty())
        return;
    painter->fillRect(bar, Qt::white);
    const QRect filled = filledRect(bar, percent, orientation);
    const QColor colour(QLatin1String(percent < BloodiedBelow ? "red" : "grey"));
    if (!filled.isEmpty())
        painter->fillRect(filled, barGradient(bar, colour, grey, orientation));
    painter->setBrush(Qt::NoBrush);
    painter->setPen(grey ? QColor(QLatin1String("gray")) : QColor(76, 76, 76));
    painter->drawRect(bar.adjusted(0, 0, -1, -1));
}

void ProgressBarDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    const QStringList parts = background.text.split(u';');
    background.text.clear();
    background.state.setFlag(QStyle::State_HasFocus, false);
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);
    if (parts.size() != 3)
        return;

    const bool grey = parts.at(2) == QLatin1String("gray");
    painter->save();
    painter->setClipRect(option.rect);
    drawBar(painter, option.rect, parts.at(0).toInt(), grey);
    // Not a colour of the palette, because the bar's background is always white.
    const QRect bar = barRect(option.rect);
    painter->setFont(fontForBar(option.font, parts.at(1), bar.size()));
    painter->setPen(grey ? QColor(QLatin1String("gray")).darker(125) : QColor(Qt::black));
    painter->drawText(bar.translated(1, 0), Qt::AlignCenter, parts.at(1));
    painter->restore();
}

#include "moc_progressbar.cpp"
