#include "messagedialog.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QUrl>

#include "smallwidgets.h"
#include "windows.h"

namespace {

constexpr int IconSize = 64;
constexpr int TextWidth = 360; // pixels; a long text wraps rather than crossing the screen
constexpr int CheckBoxRow = 2; // the buttons' own where there is no check box

QString infoIcon()
{
    return QStringLiteral(":/images/morvane-info.png");
}

QString alertIcon()
{
    return QStringLiteral(":/images/morvane-alert.png");
}

QString logoIcon()
{
    return QStringLiteral(":/images/d20-logo-128.png");
}

} // namespace

MessageDialog::MessageDialog(QWidget *parent) : QDialog(dialogParent(parent))
{
    setObjectName(QStringLiteral("messageDialog"));
}

void MessageDialog::showInfo(const QString &title, const QString &text)
{
    run(infoIcon(), title, text, {}, false);
}

void MessageDialog::showWarning(const QString &title, const QString &text)
{
    run(alertIcon(), title, text, {}, false);
}

void MessageDialog::showAbout(const QString &title, const QString &text)
{
    run(logoIcon(), title, text, {}, false);
}

bool MessageDialog::askInfo(const QString &title, const QString &text, const QString &okText)
{
    return run(infoIcon(), title, text, okText, true);
}

bool MessageDialog::askWarning(const QString &title, const QString &text, const QString &okText)
{
    return run(alertIcon(), title, text, okText, true);
}

int MessageDialog::askFolder(const QString &title, const QString &text, const QString &okText,
                             const QString &icon)
{
    build(icon, title, text);
    QDialogButtonBox *buttons = addButtons(okText, true);
    QPushButton *select = buttons->addButton(tr("Select Folder..."), QDialogButtonBox::AcceptRole);
    select->setObjectName(QStringLiteral("selectFolderButton"));
    if (exec() != Accepted)
        return 0;
    return m_clicked == select ? 2 : 1;
}

int MessageDialog::choose(const QString &title, const QString &text, const QStringList &buttons)
{
    build(alertIcon(), title, text);
    QDialogButtonBox *box = addButtons(buttons.constFirst(), true);
    QList<QAbstractButton *> choices {box->button(QDialogButtonBox::Ok)};
    for (const QString &more : buttons.mid(1))
        choices << box->addButton(more, QDialogButtonBox::AcceptRole);
    return exec() == Accepted ? int(choices.indexOf(m_clicked)) : -1;
}

void MessageDialog::hint(const QString &key, const QString &title, const QString &text)
{
    runHint(key, infoIcon(), title, text, {}, false);
}

bool MessageDialog::askHint(const QString &key, const QString &title, const QString &text,
                            const QString &okText)
{
    return runHint(key, alertIcon(), title, text, okText, true);
}

void MessageDialog::build(const QString &icon, const QString &title, const QString &text)
{
    setWindowTitle(title);
    m_hasLinks = text.contains(QStringLiteral("<a "), Qt::CaseInsensitive);

    auto *iconLabel = new QLabel;
    iconLabel->setFixedSize(IconSize, IconSize);
    iconLabel->setPixmap(QIcon(icon).pixmap(IconSize, IconSize));
    QLabel *textLabel = label(text);
    textLabel->setObjectName(QStringLiteral("messageText"));
    textLabel->setWordWrap(true);
    textLabel->setMinimumWidth(TextWidth);
    if (m_hasLinks) {
        textLabel->setTextInteractionFlags(Qt::TextBrowserInteraction);
        connect(textLabel, &QLabel::linkActivated, this, &MessageDialog::onLinkClicked);
    }

    m_grid = new QGridLayout(this);
    m_grid->setHorizontalSpacing(16);
    m_grid->setVerticalSpacing(12);
    m_grid->setColumnStretch(1, 1);
    m_grid->addWidget(iconLabel, 0, 0, Qt::AlignTop);
    m_grid->addWidget(textLabel, 0, 1, Qt::AlignVCenter);
}

QDialogButtonBox *MessageDialog::addButtons(const QString &okText, bool withCancel)
{
    auto *buttons = new QDialogButtonBox(
        withCancel ? QDialogButtonBox::Ok | QDialogButtonBox::Cancel : QDialogButtonBox::Ok);
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    if (!okText.isEmpty())
        ok->setText(okText);
    if (withCancel)
        buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    connect(buttons, &QDialogButtonBox::clicked, this, &MessageDialog::onClicked);
    connect(buttons, &QDialogButtonBox::accepted, this, &MessageDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &MessageDialog::reject);
    m_grid->addWidget(buttons, qMax(CheckBoxRow, m_grid->rowCount()), 0, 1, 2);
    return buttons;
}

bool MessageDialog::run(const QString &icon, const QString &title, const QString &text,
                        const QString &okText, bool withCancel)
{
    build(icon, title, text);
    addButtons(okText, withCancel);
    return exec() == Accepted;
}

bool MessageDialog::runHint(const QString &key, const QString &icon, const QString &title,
                            const QString &text, const QString &okText, bool withCancel)
{
    if (!QSettings().value(key, true).toBool())
        return true;
    build(icon, title, text);
    auto *box = new QCheckBox;
    box->setObjectName(QStringLiteral("notAgainBox"));
    auto *boxLabel = new ClickableLabel(tr("Do not show this message again"), box);
    m_grid->addLayout(hBox(false, true, box, boxLabel), CheckBoxRow, 0, 1, 2);
    addButtons(okText, withCancel);
    const bool accepted = exec() == Accepted;
    if (box->isChecked())
        QSettings().setValue(key, false);
    return accepted;
}

void MessageDialog::onClicked(QAbstractButton *button)
{
    m_clicked = button;
}

void MessageDialog::onLinkClicked(const QString &link)
{
    QDesktopServices::openUrl(QUrl(link));
}

void showMessage(const QString &title, const QString &text)
{
    MessageDialog dialog;
    dialog.showWarning(title, text);
}

bool askMessage(const QString &title, const QString &text, const QString &button)
{
    MessageDialog dialog;
    return dialog.askWarning(title, text, button);
}

int askFolderMessage(const QString &title, const QString &text, const QString &button)
{
    MessageDialog dialog;
    return dialog.askFolder(title, text, button, alertIcon());
}

#include "moc_messagedialog.cpp"
