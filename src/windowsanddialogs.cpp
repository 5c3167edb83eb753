#include "windowsanddialogs.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>

#include "eventsignaler.h"

namespace {

constexpr int EdgeStretch = 2;

template <typename Box>
Box *boxOf(std::initializer_list<QWidget *> widgets)
{
    auto *box = new Box;
    box->setContentsMargins(0, 0, 0, 0);
    for (QWidget *widget : widgets)
        if (widget)
            box->addWidget(widget);
    return box;
}

} // namespace

WindowsAndDialogs::~WindowsAndDialogs() = default;

QHBoxLayout *WindowsAndDialogs::hBox(QWidget *w1, QWidget *w2, QWidget *w3, QWidget *w4,
                                     QWidget *w5, QWidget *w6)
{
    return boxOf<QHBoxLayout>({w1, w2, w3, w4, w5, w6});
}

QHBoxLayout *WindowsAndDialogs::hBox(bool stretchBefore, bool stretchAfter, QWidget *w1,
                                     QWidget *w2, QWidget *w3, QWidget *w4, QWidget *w5,
                                     QWidget *w6)
{
    QHBoxLayout *box = hBox(w1, w2, w3, w4, w5, w6);
    if (stretchBefore)
        box->insertStretch(0, EdgeStretch);
    if (stretchAfter)
        box->addStretch(EdgeStretch);
    return box;
}

QWidget *WindowsAndDialogs::hWidget(QWidget *w1, QWidget *w2, QWidget *w3, QWidget *w4, QWidget *w5,
                                    QWidget *w6)
{
    return wrap(hBox(w1, w2, w3, w4, w5, w6));
}

QVBoxLayout *WindowsAndDialogs::vBox(QWidget *w1, QWidget *w2, QWidget *w3, QWidget *w4,
                                     QWidget *w5, QWidget *w6)
{
    return boxOf<QVBoxLayout>({w1, w2, w3, w4, w5, w6});
}

QWidget *WindowsAndDialogs::vWidget(QWidget *w1, QWidget *w2, QWidget *w3, QWidget *w4, QWidget *w5,
                                    QWidget *w6)
{
    return wrap(vBox(w1, w2, w3, w4, w5, w6));
}

QWidget *WindowsAndDialogs::hWidget(bool stretchBefore, bool stretchAfter, QWidget *w1, QWidget *w2,
                                    QWidget *w3, QWidget *w4, QWidget *w5, QWidget *w6)
{
    return wrap(hBox(stretchBefore, stretchAfter, w1, w2, w3, w4, w5, w6));
}

QWidget *WindowsAndDialogs::wrap(QLayout *layout)
{
    auto *widget = new QWidget;
    widget->setContentsMargins(0, 0, 0, 0);
    widget->setLayout(layout);
    return widget;
}

QSpinBox *WindowsAndDialogs::spinBox(int max, int min, int value, bool setValue)
{
    auto *box = new QSpinBox;
    box->setRange(min, max);
    if (setValue) {
        box->setValue(value);
        box->selectAll();
    }
    return box;
}

QLabel *WindowsAndDialogs::label(const char *text)
{
    return label(QString::fromUtf8(text));
}

QLabel *WindowsAndDialogs::label(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::RichText);
    return label;
}

QToolButton *WindowsAndDialogs::toolButton(const QString &text, int width, int height, int arrow)
{
    constexpr Qt::ArrowType arrows[] = {Qt::NoArrow, Qt::DownArrow, Qt::RightArrow, Qt::UpArrow};
    auto *button = new QToolButton;
    button->setText(text);
    if (width != 0)
        button->setFixedSize(width, height);
    else
        button->setFixedHeight(height);
    if (arrow > NoArrow && arrow <= UpArrow)
        button->setArrowType(arrows[arrow]);
    return button;
}

QLineEdit *WindowsAndDialogs::filterEdit(const QString &objectName,
                                         std::function<void(QObject *)> changed)
{
    auto *edit = new QLineEdit;
    edit->setObjectName(objectName);
    edit->setPlaceholderText(QCoreApplication::translate("WindowsAndDialogs", "Enter filter text"));
    edit->setAccessibleName(QCoreApplication::translate("WindowsAndDialogs", "Filter"));
    edit->setClearButtonEnabled(true);
    auto *signaler = new EventSignaler(edit);
    edit->installEventFilter(signaler);
    // Queued, because the event reaches the event filter before the edit; and not to the edit, for
    // which the call would be one more event.
    QObject::connect(signaler, &EventSignaler::doEventReceived, signaler, std::move(changed),
                     Qt::QueuedConnection);
    return edit;
}

void WindowsAndDialogs::selectComboItem(QComboBox *box, const QString &text)
{
    const int index = box->findText(text, Qt::MatchFixedString);
    if (index >= 0)
        box->setCurrentIndex(index);
    else if (box->isEditable())
        box->setEditText(text);
    else
        box->setCurrentIndex(0);
}

QString WindowsAndDialogs::comboText(QComboBox *box)
{
    return box->currentText();
}
