#include "jumpindialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "creature.h"
#include "text.h"
#include "windows.h"

JumpInDialog::JumpInDialog(const CreatureList &delayed, const CreatureList &readied,
                           QWidget *parent)
    : QDialog(dialogParent(parent)), m_delayedList(delayed), m_readiedList(readied),
      m_whoBox(new QComboBox)
{
    setObjectName(QStringLiteral("jumpInDialog"));
    setWindowTitle(tr("Jump In"));
    m_whoBox->setObjectName(QStringLiteral("whoBox"));
    for (const Creature *creature : m_delayedList)
        m_whoBox->addItem(shortened(creature->displayName(), LongestName) + tr(" (Delayed)"));
    for (const Creature *creature : m_readiedList)
        m_whoBox->addItem(shortened(creature->displayName(), LongestName) + tr(" (Ready'ed)"));

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    QVBoxLayout *box = vBox(label(tr("<b>Who will Jump in?</b>")), m_whoBox, buttons);
    box->unsetContentsMargins();
    setLayout(box);
    m_whoBox->setFocus();
}

Creature *JumpInDialog::selected() const
{
    const int index = m_whoBox->currentIndex();
    const int delayed = m_delayedList.count();
    return index < delayed ? m_delayedList.at(index) : m_readiedList.at(index - delayed);
}

#include "moc_jumpindialog.cpp"
