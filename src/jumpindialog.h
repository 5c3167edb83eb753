// Asks which of several waiting creatures jumps in.
#pragma once

#include <QDialog>

#include "creaturelist.h"
#include "windowsanddialogs.h"

class QComboBox;

class JumpInDialog : public QDialog, public WindowsAndDialogs {
    Q_OBJECT

public:
    // Without a parent it stands above the window that was active last.
    JumpInDialog(const CreatureList &delayed, const CreatureList &readied,
                 QWidget *parent = nullptr);

    // Null when both lists are empty.
    Creature *selected() const;

private:
    CreatureList m_delayedList;
    CreatureList m_readiedList;
    QComboBox *m_whoBox = nullptr;
};
