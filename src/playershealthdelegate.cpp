#include "playershealthdelegate.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QPainter>
#include <QTextDocument>

#include "fittedtext.h"

namespace {

constexpr int KeptDocuments = 512; // several screens full of rows
constexpr int KeptWidths = 8192; // a long list in a few sizes
// What barRect() leaves around the bar, and the text on the bar, on both sides together.
constexpr int BarMargin = 9;
constexpr int TextMargin = 8;
constexpr int LineMargin = 1;

struct HealthCell {
    int size = 0;
    int percent = 0;
    QString html;
    bool isGrey = false;
};

HealthCell readCell(const QString &text)
{
    HealthCell cell;
    const QChar separator = u'&';
    cell.size = text.section(separator, 0, 0).toInt();
    cell.percent = text.section(separator, 1, 1).toInt();
    cell.html = text.section(separator, 2, -2);
    cell.isGrey = text.section(separator, -1) == QLatin1String("gray");
    if (cell.isGrey)
        cell.html = QStringLiteral("<font color=gray>%1</font>").arg(cell.html);
    return cell;
}

} // namespace

PlayersHealthDelegate::PlayersHealthDelegate(QObject *parent)
    : QStyledItemDelegate(parent), m_documents(KeptDocuments), m_widths(KeptWidths)
{
}

PlayersHealthDelegate::~PlayersHealthDelegate() = default;

int PlayersHealthDelegate::heightFor(const QFont &font) const
{
    return QFontMetrics(font).height() + zoomed(BarMargin + LineMargin, m_zoom);
}

int PlayersHealthDelegate::widthFor(const QString &text, const QFont &font) const
{
    const QString html = readCell(text).html;
    const int margin = zoomed(BarMargin + TextMargin, m_zoom);
    const QString key = font.key() + html;
    if (const int *kept = m_widths.object(key))
        return *kept + margin;
    const int width = qCeil(documentFor(html, font, QWIDGETSIZE_MAX)->idealWidth());
    m_widths.insert(key, new int(width));
    return width + margin;
}

QSize PlayersHealthDelegate::sizeHint(const QStyleOptionViewItem &option,
                                      const QModelIndex &index) const
{
    const QString text = index.data().toString();
    QFont font = option.font;
    font.setPixelSize(zoomed(readCell(text).size, m_zoom));
    return {widthFor(text, font), heightFor(font)};
}

QTextDocument *PlayersHealthDelegate::documentFor(const QString &html, const QFont &font,
                                                  int width) const
{
    const QString key = QString::number(width) + u'\n' + font.key() + u'\n' + html;
    if (QTextDocument *kept = m_documents.object(key))
        return kept;
    auto *document = new QTextDocument;
    document->setUndoRedoEnabled(false);
    document->setDocumentMargin(0);
    document->setDefaultFont(font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    document->setDefaultTextOption(option);
    document->setHtml(html);
    fitText(*document, QSizeF(width, QWIDGETSIZE_MAX));
    m_documents.insert(key, document);
    return document;
}

void PlayersHealthDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    const HealthCell cell = readCell(std::exchange(background.text, QString()));
    background.state.setFlag(QStyle::State_HasFocus, false);
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);

    const qreal zoom = m_zoom / 100.0;
    painter->save();
    painter->setClipRect(option.rect);
    painter->translate(option.rect.topLeft());
    painter->scale(zoom, zoom);
    const QSize unzoomed = (QSizeF(option.rect.size()) / zoom).toSize();
    drawBar(painter, QRect({}, unzoomed), cell.percent, cell.isGrey);
    painter->restore();

    QFont font = option.font;
    font.setPixelSize(zoomed(cell.size, m_zoom));
    const int room = option.rect.width() - zoomed(BarMargin + TextMargin, m_zoom);
    QTextDocument *document = documentFor(cell.html, font, qMax(0, room) + 1);
    QAbstractTextDocumentLayout::PaintContext context;
    // Not a colour of the palette, because the bar's background is always white.
    context.palette.setColor(QPalette::Text, Qt::black);
    painter->save();
    painter->setClipRect(option.rect);
    const QSizeF text(document->idealWidth(), document->size().height());
    const QSizeF free = (QSizeF(option.rect.size()) - text) / 2;
    painter->translate(option.rect.left() + free.width(), option.rect.top() + free.height());
    document->documentLayout()->draw(painter, context);
    painter->restore();
}

#include "moc_playershealthdelegate.cpp"
