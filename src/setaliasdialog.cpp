#include "setaliasdialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

#include "creature.h"
#include "creaturelist.h"
#include "text.h"
#include "windows.h"

namespace {

constexpr int EditWidth = 240; // pixels

} // namespace

SetAliasDialog::SetAliasDialog(const CreatureList &creatures, QWidget *parent)
    : QDialog(dialogParent(parent)), m_aliasEdit(new QLineEdit),
      m_enableBox(new QCheckBox(tr("Enable alias")))
{
    const auto hasAlias = [](const Creature *creature) { return !creature->alias().isEmpty(); };
    const auto hidesAlias = [&](const Creature *creature) {
        return hasAlias(creature) && creature->aliasMode() == 0;
    };
    setObjectName(QStringLiteral("setAliasDialog"));
    setWindowTitle(tr("Set Alias"));
    QLabel *who = label(tr("<b>Set Alias</b> for %1:").arg(asHtml(creatures.names())));
    who->setObjectName(QStringLiteral("whoLabel"));
    who->setWordWrap(true);

    m_aliasEdit->setObjectName(QStringLiteral("aliasEdit"));
    m_aliasEdit->setMinimumWidth(EditWidth);
    m_aliasEdit->setPlaceholderText(tr("Enter an Alias"));
    m_aliasEdit->setToolTip(tr("Enter an alias"));
    m_aliasEdit->setMaxLength(LongestLine);
    if (creatures.count() == 1) {
        const Creature *only = creatures.at(0);
        m_aliasEdit->setText(hasAlias(only) ? only->alias() : only->displayName());
        m_aliasEdit->selectAll();
    }
    m_enableBox->setObjectName(QStringLiteral("enableBox"));
    m_enableBox->setChecked(std::none_of(creatures.begin(), creatures.end(), hidesAlias));

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    QPushButton *remove = buttons->addButton(tr("Remove Alias"), QDialogButtonBox::ResetRole);
    remove->setObjectName(QStringLiteral("removeButton"));
    remove->setEnabled(std::any_of(creatures.begin(), creatures.end(), hasAlias));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(remove, &QPushButton::clicked, this, &SetAliasDialog::doRemoveClicked);

    QVBoxLayout *box = vBox(who, m_aliasEdit, m_enableBox, buttons);
    box->unsetContentsMargins();
    setLayout(box);
    m_aliasEdit->setFocus();
}

void SetAliasDialog::doRemoveClicked()
{
    m_mode = Remove;
    accept();
}

SetAliasDialog::Mode SetAliasDialog::result(QString &text)
{
    text = m_aliasEdit->text();
    if (m_mode == Undecided)
        m_mode = m_enableBox->isChecked() ? Show : Hide;
    return m_mode;
}

#include "moc_setaliasdialog.cpp"
