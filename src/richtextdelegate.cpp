#include "richtextdelegate.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextDocument>
#include <QTextOption>

#include "readablecolours.h"

namespace {

constexpr int KeptDocuments = 512; // several screens full of rows
constexpr int SmallestText = 8; // pixels: what can still be read

// One line that is wider than its cell is set in smaller type rather than cut.
void condense(QTextDocument &document, int width)
{
    QFont font = document.defaultFont();
    while (document.idealWidth() > width && font.pixelSize() > SmallestText) {
        font.setPixelSize(font.pixelSize() - 1);
        document.setDefaultFont(font);
    }
}

} // namespace

RichTextDelegate::RichTextDelegate(bool scaleFont, bool noWrap, bool centre, QObject *parent)
    : QItemDelegate(parent), m_scaleFont(scaleFont), m_noWrap(noWrap), m_centre(centre),
      m_documents(KeptDocuments)
{
}

RichTextDelegate::~RichTextDelegate() = default;

void RichTextDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    const QStyleOptionViewItem cell = setOptions(index, option);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    drawBackground(painter, cell, index);

    const QString html = readableColours(index.data(Qt::DisplayRole).toString(), cell.palette);
    QTextDocument *document = documentFor(html, cell.font, cell.rect.size());
    const bool selected = cell.state.testFlag(QStyle::State_Selected);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = cell.palette;
    if (selected)
        context.palette.setColor(QPalette::Text, cell.palette.color(QPalette::HighlightedText));
    painter->setClipRect(cell.rect);
    painter->translate(cell.rect.topLeft());
    if (m_centre)
        painter->translate(0, (cell.rect.height() - document->size().height()) / 2);
    document->documentLayout()->draw(painter, context);
    painter->restore();
}

QTextDocument *RichTextDelegate::documentFor(const QString &html, const QFont &font,
                                             const QSize &cell) const
{
    QFont used = font;
    if (m_scaleFont)
        used.setPixelSize(qMax(1, cell.height() / 2));
    const QString key = QString::number(cell.width()) + u'\n' + used.key() + u'\n' + html;
    if (QTextDocument *kept = m_documents.object(key))
        return kept;

    auto *document = new QTextDocument;
    document->setUndoRedoEnabled(false);
    document->setUseDesignMetrics(true);
    document->setDefaultFont(used);
    QTextOption text(m_centre ? Qt::AlignCenter : Qt::AlignLeft);
    text.setWrapMode(m_noWrap ? QTextOption::NoWrap : QTextOption::WordWrap);
    document->setDefaultTextOption(text);
    document->setHtml(html);
    if (m_scaleFont && m_noWrap)
        condense(*document, cell.width());
    document->setTextWidth(cell.width());
    m_documents.insert(key, document);
    return document;
}

#include "moc_richtextdelegate.cpp"
