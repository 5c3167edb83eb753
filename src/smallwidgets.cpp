#include "smallwidgets.h"

#include <QAbstractButton>
#include <QEvent>
#include <QRadioButton>
#include <QScrollBar>

namespace {

int heightFor(const QWidget *content, int width)
{
    const int height = content->hasHeightForWidth() ? content->heightForWidth(width)
                                                    : content->sizeHint().height();
    return qMax(height, content->minimumHeight());
}

} // namespace

ClickableLabel::ClickableLabel(const QString &text, QAbstractButton *button, QWidget *parent)
    : QLabel(text, parent), m_button(button)
{
    setBuddy(button);
}

void ClickableLabel::mousePressEvent(QMouseEvent *event)
{
    QLabel::mousePressEvent(event);
    if (!m_button || !m_button->isEnabled())
        return;
    // Like a press on the button itself: a radio button can't be turned off by its own label.
    if (!qobject_cast<QRadioButton *>(m_button) || !m_button->isChecked())
        m_button->toggle();
    Q_EMIT clicked(m_button->isChecked());
}

ResizableScrollArea::ResizableScrollArea(QWidget *parent) : QScrollArea(parent) { }

void ResizableScrollArea::setFixed(bool fixed)
{
    m_fixed = fixed;
    fitWidget();
}

void ResizableScrollArea::fitWidget()
{
    QWidget *content = widget();
    if (!content)
        return;
    if (m_fixed) {
        content->resize(maximumViewportSize());
        return;
    }
    const QSize room = maximumViewportSize();
    int width = room.width() - verticalScrollBar()->sizeHint().width();
    int height = heightFor(content, width);
    // A text of more than two pages needs the bar in any case; its layout without one would be
    // wasted.
    if (height <= 2 * room.height()) {
        const int heightWithoutBar = heightFor(content, room.width());
        if (heightWithoutBar <= room.height()) {
            width = room.width();
            height = heightWithoutBar;
        }
    }
    // A form that is too wide gets a horizontal scroll bar and isn't cut off.
    content->resize(qMax(width, content->minimumSizeHint().width()), height);
}

void ResizableScrollArea::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    fitWidget();
}

bool ResizableScrollArea::eventFilter(QObject *object, QEvent *event)
{
    const bool filtered = QScrollArea::eventFilter(object, event);
    // Another widget, or a form that was built anew, may need another size.
    const bool changed = event->type() == QEvent::Show || event->type() == QEvent::LayoutRequest;
    if (object == widget() && changed)
        fitWidget();
    return filtered;
}

#include "moc_smallwidgets.cpp"
