// Asks for an alias and whether it is shown, or whether it is removed.
#pragma once

#include <QDialog>

#include "windowsanddialogs.h"

class CreatureList;
class QCheckBox;
class QLineEdit;

class SetAliasDialog : public QDialog, public WindowsAndDialogs {
    Q_OBJECT

public:
    enum Mode { Undecided, Show, Hide, Remove };

    // Without a parent it stands above the window that was active last.
    explicit SetAliasDialog(const CreatureList &creatures, QWidget *parent = nullptr);

    // What was decided, once the dialog is accepted, and the alias that was entered. An empty text
    // stands for the alias that each creature has.
    Mode result(QString &text);

private Q_SLOTS:
    void doRemoveClicked();

private:
    Mode m_mode = Undecided;
    QLineEdit *m_aliasEdit = nullptr;
    QCheckBox *m_enableBox = nullptr;
};
