// Asks for another name for a monster whose name is taken.
#pragma once

#include <QDialog>

#include "windowsanddialogs.h"

class QLineEdit;
class QPushButton;

class RenameDialog : public QDialog, public WindowsAndDialogs {
    Q_OBJECT

public:
    // `oldName` is the one that the monster had so far, which it may have again; empty for a new
    // monster. `name` is the taken one.
    RenameDialog(const QString &oldName, const QString &name, QWidget *parent = nullptr);

    // Trimmed.
    QString name() const;

public Q_SLOTS:
    void onNameChanged(const QString &text);

private:
    QString m_oldName;
    QLineEdit *m_name;
    QPushButton *m_ok = nullptr;
};
