// A combo box of numbered choices, some of which may not be taken just now.
#pragma once

#include <QComboBox>
#include <QSet>

// An item's user data is its number. A disabled item is grey and can still be chosen: whoever is
// told of the choice asks isItemEnabled() and takes it back.
class DisableComboBox : public QComboBox {
    Q_OBJECT

public:
    explicit DisableComboBox(QWidget *parent = nullptr);

    bool isItemEnabled(int index) const { return !m_disabled.contains(index); }
    // Of the first item with that value. Enabling the current item makes the first one current.
    void setItemEnabledByValue(int value, bool enabled);
    // False when no item has the value; the current item stays then.
    bool selectByValue(int value);
    int currentValue() const;

private:
    QSet<int> m_disabled;
};
