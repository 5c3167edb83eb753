#include "formpage.h"

#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include "smallwidgets.h"
#include "text.h"

namespace {

constexpr int Margin = 8;
constexpr int Spacing = 5;

} // namespace

FormPage::FormPage(QWidget *parent)
    : QFrame(parent), m_title(new QLabel), m_area(new ResizableScrollArea)
{
    m_title->setTextFormat(Qt::RichText);
    m_title->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_area->setFrameShape(QFrame::NoFrame);
    auto *box = new QVBoxLayout(this);
    box->setContentsMargins(Margin, Margin, Margin, Margin);
    box->setSpacing(Spacing);
    box->addWidget(m_title);
    box->addWidget(m_area);
}

void FormPage::setTitle(const QString &title)
{
    m_title->setText(asHtml(title, LongestName));
}

void FormPage::setForm(QWidget *form, bool fixed)
{
    if (form != m_area->widget())
        m_area->takeWidget(); // setWidget() would delete it
    if (!form)
        return;
    m_area->setFixed(fixed);
    m_area->setWidget(form);
}

int FormPage::neededWidth(const QWidget &form) const
{
    return form.minimumSizeHint().width() + 2 * Margin
        + m_area->verticalScrollBar()->sizeHint().width();
}

#include "moc_formpage.cpp"
