#include "dynlabel.h"

#include <QMouseEvent>

#include <utility>

DynLabel::DynLabel(const QString &normalText, const QString &hoverText, int index, QWidget *parent)
    : QLabel(parent), m_normalText(normalText), m_hoverText(hoverText), m_index(index)
{
    setTextFormat(Qt::RichText);
    setStyleSheet(QStringLiteral("QLabel { padding: 0px }"));
    setText(m_normalText);
}

void DynLabel::swap()
{
    std::swap(m_normalText, m_hoverText);
    setText(m_normalText);
}

// The label may have been deleted when the signal returns.
void DynLabel::mousePressEvent(QMouseEvent *)
{
    Q_EMIT clicked(m_index);
}

void DynLabel::enterEvent(QEnterEvent *)
{
    setText(m_hoverText);
}

void DynLabel::leaveEvent(QEvent *)
{
    setText(m_normalText);
}

#include "moc_dynlabel.cpp"
