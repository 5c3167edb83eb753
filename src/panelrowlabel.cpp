#include "panelrowlabel.h"

#include <QEvent>
#include <QTextDocument>
#include <QtMath>

namespace {

// A layout first asks for the height at almost no width.
constexpr int LeastWidth = 24; // pixels

} // namespace

PanelRowLabel::PanelRowLabel(const QString &html, QWidget *parent) : QLabel(html, parent)
{
    setTextFormat(Qt::RichText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setWordWrap(true);
}

int PanelRowLabel::oneLineWidth() const
{
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(font());
    document.setHtml(text());
    return qCeil(document.idealWidth());
}

QSize PanelRowLabel::sizeHint() const
{
    return QSize(0, fontMetrics().height());
}

QSize PanelRowLabel::minimumSizeHint() const
{
    return sizeHint();
}

int PanelRowLabel::heightForWidth(int width) const
{
    if (width < LeastWidth)
        return sizeHint().height();
    if (m_measured != text()) {
        m_measured = text();
        m_heights.clear();
    }
    const auto known = m_heights.constFind(width);
    if (known != m_heights.constEnd())
        return *known;
    const int height = QLabel::heightForWidth(width);
    m_heights.insert(width, height);
    return height;
}

void PanelRowLabel::changeEvent(QEvent *event)
{
    m_heights.clear();
    QLabel::changeEvent(event);
}

#include "moc_panelrowlabel.cpp"
