#include "fittedtext.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>
#include <QtMath>

#include "global.h"
#include "readablecolours.h"

namespace {

// Bold lines are a little higher than the font says.
constexpr qreal LineSlack = 0.9;
const QString Ellipsis = QStringLiteral("…");

// Where the last line that lies within the height begins and ends.
struct Line {
    int end = 0;
    qreal top = 0;
    qreal bottom = 0;
    bool isLast = true;
};

Line lastLine(const QTextDocument &document, qreal height)
{
    Line found;
    bool isFirst = true;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QPointF place = document.documentLayout()->blockBoundingRect(block).topLeft();
        for (int i = 0; i < block.layout()->lineCount(); ++i) {
            const QTextLine line = block.layout()->lineAt(i);
            const qreal top = place.y() + line.y();
            if (!isFirst && top + line.height() * LineSlack > height) {
                found.isLast = false;
                return found;
            }
            isFirst = false;
            found.end = block.position() + line.textStart() + line.textLength();
            found.top = top;
            found.bottom = top + line.height();
        }
    }
    return found;
}

void cutAt(QTextDocument &document, int position)
{
    QTextCursor cursor(&document);
    cursor.setPosition(qMax(0, position));
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.insertText(Ellipsis);
}

} // namespace

int zoomed(qreal size, int percent)
{
    return qMax(1, qRound(size * percent / 100));
}

int lineHeight(const QFont &font)
{
    QFont bold = font;
    bold.setBold(true);
    const QFontMetricsF metrics(bold);
    return qCeil(metrics.ascent()) + qCeil(metrics.descent());
}

void fitText(QTextDocument &document, const QSizeF &room)
{
    document.setTextWidth(room.width());
    const Line line = lastLine(document, room.height());
    if (line.isLast && document.idealWidth() <= room.width())
        return;
    const qreal width =
        room.width() - QFontMetricsF(document.defaultFont()).horizontalAdvance(Ellipsis) - 1;
    const QPointF end(qMax<qreal>(0, width), (line.top + line.bottom) / 2);
    const int position = document.documentLayout()->hitTest(end, Qt::FuzzyHit);
    cutAt(document, qMin(position, line.end));
    // A letter that is half behind the edge counts as before it.
    while (document.idealWidth() > room.width() && document.characterCount() > 2)
        cutAt(document, document.characterCount() - 3);
}

FittedLabel::FittedLabel(bool wraps, QWidget *parent) : QLabel(parent), m_wraps(wraps)
{
    setTextFormat(Qt::RichText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

FittedLabel::~FittedLabel() = default;

QSize FittedLabel::sizeHint() const
{
    return {0, lineHeight(font())};
}

QSize FittedLabel::minimumSizeHint() const
{
    return sizeHint();
}

qreal FittedLabel::widthIn(const QFont &font) const
{
    if (text().isEmpty())
        return 0;
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setDocumentMargin(0);
    document.setDefaultFont(font);
    document.setHtml(text());
    return document.idealWidth();
}

const QTextDocument &FittedLabel::document()
{
    const QString html = readableColours(text(), palette());
    const QString key = QStringLiteral("%1 %2 %3 ").arg(width()).arg(height()).arg(font().key());
    if (m_document && m_key == key + html)
        return *m_document;
    m_document = std::make_unique<QTextDocument>();
    m_key = key + html;
    m_document->setUndoRedoEnabled(false);
    m_document->setDocumentMargin(0);
    m_document->setDefaultFont(font());
    QTextOption option(alignment());
    option.setWrapMode(m_wraps ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    m_document->setDefaultTextOption(option);
    m_document->setHtml(html);
    fitText(*m_document, size());
    return *m_document;
}

void FittedLabel::paintEvent(QPaintEvent *)
{
    if (text().isEmpty())
        return;
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette();
    context.palette.setColor(QPalette::Text, palette().color(foregroundRole()));
    QPainter painter(this);
    document().documentLayout()->draw(&painter, context);
}

PortraitLabel::PortraitLabel(QWidget *parent) : QLabel(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    setPortrait({});
}

void PortraitLabel::setPortrait(const QPixmap &portrait)
{
    const QPixmap shown = portrait.isNull() && blankPortrait ? *blankPortrait : portrait;
    if (shown.cacheKey() == m_portrait.cacheKey())
        return;
    m_portrait = shown;
    m_scaled = {};
    setPixmap(m_portrait);
}

QSize PortraitLabel::sizeHint() const
{
    return {height(), height()};
}

void PortraitLabel::paintEvent(QPaintEvent *)
{
    if (m_portrait.isNull() || size().isEmpty())
        return;
    const qreal ratio = devicePixelRatioF();
    const QSize place = m_portrait.size().scaled(size() * ratio, Qt::KeepAspectRatio);
    if (m_scaled.size() != place) {
        m_scaled = m_portrait.scaled(place, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_scaled.setDevicePixelRatio(ratio);
    }
    const QSize shown = place / ratio;
    QPainter painter(this);
    painter.drawPixmap((width() - shown.width()) / 2, (height() - shown.height()) / 2, m_scaled);
}

#include "moc_fittedtext.cpp"
