// The message box of the program, with its "do not show again".
#pragma once

#include <QDialog>

#include "windowsanddialogs.h"

class QAbstractButton;
class QDialogButtonBox;
class QGridLayout;

// Made for one message. Texts are rich text; links in them open in the system's browser.
class MessageDialog : public QDialog, public WindowsAndDialogs {
    Q_OBJECT

public:
    // Null stands for the window of the program that was active last.
    explicit MessageDialog(QWidget *parent = nullptr);

    void showInfo(const QString &title, const QString &text);
    void showWarning(const QString &title, const QString &text);
    void showAbout(const QString &title, const QString &text);
    // True for the button `okText`.
    bool askInfo(const QString &title, const QString &text, const QString &okText);
    bool askWarning(const QString &title, const QString &text, const QString &okText);
    // 2 for "Select Folder...", 1 for `okText`, 0 for Cancel.
    int askFolder(const QString &title, const QString &text, const QString &okText,
                  const QString &icon);
    // Index of the button that was pressed, -1 for Cancel; the first is the default.
    int choose(const QString &title, const QString &text, const QStringList &buttons);
    // `key` of the settings is false once the user asked not to see the message again. hint() then
    // does nothing, and askHint() answers true unasked.
    void hint(const QString &key, const QString &title, const QString &text);
    bool askHint(const QString &key, const QString &title, const QString &text,
                 const QString &okText);

private Q_SLOTS:
    void onClicked(QAbstractButton *button);
    void onLinkClicked(const QString &link);

private:
    void build(const QString &icon, const QString &title, const QString &text);
    QDialogButtonBox *addButtons(const QString &okText, bool withCancel);
    bool run(const QString &icon, const QString &title, const QString &text, const QString &okText,
             bool withCancel);
    bool runHint(const QString &key, const QString &icon, const QString &title, const QString &text,
                 const QString &okText, bool withCancel);

    QGridLayout *m_grid = nullptr;
    QAbstractButton *m_clicked = nullptr;
    bool m_hasLinks = false;
};

void showMessage(const QString &title, const QString &text);
// True when the user presses the button `button`, false for Cancel.
bool askMessage(const QString &title, const QString &text, const QString &button);
// As MessageDialog::askFolder, with the icon of a warning.
int askFolderMessage(const QString &title, const QString &text, const QString &button);
