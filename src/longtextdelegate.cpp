#include "longtextdelegate.h"

#include "text.h"

#include <QApplication>
#include <QPainter>

#include <utility>

namespace {

constexpr int KeptLines = 512; // several screens full of rows

} // namespace

LongTextDelegate::LongTextDelegate(QObject *parent)
    : QStyledItemDelegate(parent), m_lines(KeptLines)
{
}

void LongTextDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.state.setFlag(QStyle::State_HasFocus, false);
    const QString text = shortened(std::exchange(cell.text, QString()));
    const QStyle *style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
    const QRect place = cell.rect.adjusted(margin, 0, -margin, 0);
    if (text.isEmpty() || place.width() <= 0)
        return;
    const bool selected = cell.state.testFlag(QStyle::State_Selected);
    const auto group =
        cell.state.testFlag(QStyle::State_Active) ? QPalette::Normal : QPalette::Inactive;
    painter->setPen(
        cell.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(cell.font);
    const QStaticText line = lineFor(text, cell.font, place.width());
    // As the style rounds it, so that the text stands level with that of the other columns.
    const int above = place.height() / 2 - int(line.size().height()) / 2;
    painter->drawStaticText(place.topLeft() + QPoint(0, above), line);
}

QStaticText LongTextDelegate::lineFor(const QString &text, const QFont &font, int width) const
{
    const QString key = QString::number(width) + u'\n' + font.key() + u'\n' + text;
    if (const QStaticText *kept = m_lines.object(key))
        return *kept;
    auto *line = new QStaticText(QFontMetrics(font).elidedText(text, Qt::ElideRight, width));
    line->setTextFormat(Qt::PlainText);
    line->prepare(QTransform(), font);
    const QStaticText shared = *line;
    m_lines.insert(key, line);
    return shared;
}

#include "moc_longtextdelegate.cpp"
