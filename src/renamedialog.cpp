#include "renamedialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "creaturefile.h"
#include "monsters.h"
#include "text.h"
#include "windows.h"

namespace {

constexpr int IconSize = 64;

} // namespace

RenameDialog::RenameDialog(const QString &oldName, const QString &name, QWidget *parent)
    : QDialog(dialogParent(parent)), m_oldName(oldName), m_name(new QLineEdit(name))
{
    setObjectName(QStringLiteral("renameDialog"));
    setWindowTitle(tr("Duplicate Monster Name"));
    auto *icon = new QLabel;
    icon->setPixmap(QPixmap(QStringLiteral(":/images/morvane-alert.png"))
                        .scaled(IconSize, IconSize, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    QLabel *text = label(tr("You already have a monster called <b>%1</b>. Please enter a new name "
                            "for the Monster.")
                             .arg(asHtml(name, LongestName)));
    text->setWordWrap(true);
    auto *nameLabel = new QLabel(tr("Name:"));
    nameLabel->setBuddy(m_name);
    m_name->setObjectName(QStringLiteral("nameEdit"));
    m_name->setAccessibleName(tr("Name"));
    m_name->selectAll();
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_ok->setEnabled(false);
    auto *grid = new QGridLayout(this);
    grid->addWidget(icon, 0, 0, Qt::AlignTop);
    grid->addWidget(text, 0, 1, 1, 2);
    grid->addWidget(nameLabel, 1, 1);
    grid->addWidget(m_name, 1, 2);
    grid->addWidget(buttons, 2, 0, 1, 3);
    connect(m_name, &QLineEdit::textChanged, this, &RenameDialog::onNameChanged);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QString RenameDialog::name() const
{
    return m_name->text().trimmed();
}

void RenameDialog::onNameChanged(const QString &text)
{
    const QString wanted = text.trimmed();
    const bool isOld = !m_oldName.isEmpty() && wanted == m_oldName;
    m_ok->setEnabled(
        isOld || (isUsableName(wanted) && theMonsters->nameState(wanted) == NameState::Free));
}

#include "moc_renamedialog.cpp"
