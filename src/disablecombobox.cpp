#include "disablecombobox.h"

#include <QStyledItemDelegate>

namespace {

// An enabled item has the colour of the desktop's palette and not its own black, which couldn't be
// read on a dark ground.
class ChoiceDelegate : public QStyledItemDelegate {
public:
    explicit ChoiceDelegate(DisableComboBox *box) : QStyledItemDelegate(box), m_box(box) { }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (m_box->isItemEnabled(index.row()))
            option->palette.setBrush(QPalette::Text, m_box->palette().brush(QPalette::Text));
        else // also under the mouse
            option->palette.setBrush(QPalette::HighlightedText,
                                     option->palette.brush(QPalette::Text));
    }

private:
    const DisableComboBox *m_box;
};

} // namespace

DisableComboBox::DisableComboBox(QWidget *parent) : QComboBox(parent)
{
    setItemDelegate(new ChoiceDelegate(this));
}

void DisableComboBox::setItemEnabledByValue(int value, bool enabled)
{
    const int index = findData(value);
    if (index < 0 || enabled == isItemEnabled(index))
        return;
    setItemData(index, QColor(enabled ? Qt::black : QColor(QStringLiteral("grey"))),
                Qt::ForegroundRole);
    if (!enabled) {
        m_disabled.insert(index);
        return;
    }
    m_disabled.remove(index);
    if (index == currentIndex())
        setCurrentIndex(0);
}

bool DisableComboBox::selectByValue(int value)
{
    const int index = findData(value);
    if (index < 0)
        return false;
    setCurrentIndex(index);
    return true;
}

int DisableComboBox::currentValue() const
{
    return currentData().toInt();
}

#include "moc_disablecombobox.cpp"
