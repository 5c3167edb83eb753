#include "panelhead.h"

#include <QEvent>
#include <QLabel>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

constexpr QMargins Margins(6, 2, 6, 2);

// Replaces all behind the first `count` characters by an ellipsis.
void cutAt(QTextDocument &document, int count)
{
    QTextCursor rest(&document);
    rest.setPosition(count);
    rest.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    rest.insertText(QStringLiteral("\u2026"));
}

// Cuts the text to the width and keeps the formats of the rest.
QString elided(const QString &html, const QFont &font, int width)
{
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(font);
    document.setHtml(html);
    if (document.idealWidth() <= width)
        return html;
    // A binary search, because each layout costs time.
    int fits = 0;
    int tooLong = document.characterCount();
    while (tooLong - fits > 1) {
        const int middle = (fits + tooLong) / 2;
        document.setHtml(html);
        cutAt(document, middle);
        (document.idealWidth() <= width ? fits : tooLong) = middle;
    }
    document.setHtml(html);
    cutAt(document, fits);
    return document.toHtml();
}

} // namespace

PanelHead::PanelHead(int height, QWidget *parent) : QFrame(parent)
{
    setFrameStyle(int(QFrame::WinPanel) | int(QFrame::Raised));
    setLineWidth(2);
    setFixedHeight(height);
    auto *box = new QVBoxLayout(this);
    box->setContentsMargins(Margins);
    box->setSpacing(0);
}

void PanelHead::addLine(QLabel *line)
{
    layout()->addWidget(line);
    m_lines.append({line, QString()});
}

void PanelHead::setLine(const QLabel *line, const QString &html)
{
    for (Line &known : m_lines) {
        if (known.label == line)
            known.html = html;
    }
}

void PanelHead::fitLines()
{
    const QRect inside = contentsRect().marginsRemoved(Margins);
    int room = inside.height();
    for (const Line &line : std::as_const(m_lines))
        room -= line.label->fontMetrics().height();
    for (auto line = m_lines.crbegin(); line != m_lines.crend(); ++line) {
        QLabel *label = line->label;
        label->setText(line->html);
        label->setWordWrap(true);
        const int more = label->heightForWidth(inside.width()) - label->fontMetrics().height();
        const bool wordsFit = label->minimumSizeHint().width() <= inside.width();
        if (line->html.isEmpty() || (wordsFit && more <= room)) {
            room -= qMax(0, more);
            continue;
        }
        label->setWordWrap(false);
        label->setText(elided(line->html, label->font(), inside.width()));
    }
}

void PanelHead::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    fitLines();
}

void PanelHead::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        fitLines();
}

#include "moc_panelhead.cpp"
