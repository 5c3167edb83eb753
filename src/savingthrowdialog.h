// Rolls the saving throws that are due at the end of a creature's turn. The DM has the last word on
// each: a player may have rolled by hand.
#pragma once

#include <QDialog>

#include "windowsanddialogs.h"

class Creature;
class Effect;
class QCheckBox;
class QDialogButtonBox;
class QGridLayout;
class QScrollArea;

// Without `mayCancel` there is no Cancel, and Escape or the frame's close button accept what the
// boxes say. In any case closing `parent` rejects the dialog, as nobody was there to confirm it.
class SavingThrowDialog : public QDialog, public WindowsAndDialogs {
    Q_OBJECT

public:
    // A row for each effect, which stays the caller's.
    SavingThrowDialog(const Creature *creature, const QList<Effect *> &effects, bool mayCancel,
                      QWidget *parent = nullptr);

    // Those whose box is checked, in the order of the list.
    QList<Effect *> savedEffects() const;

public Q_SLOTS:
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *modificationsBox(const QString &text, int modifier, bool isComplex);
    QScrollArea *rowArea(const QList<Effect *> &effects, int modifier);
    void addRow(QGridLayout *grid, const Effect *effect, int modifier);
    QDialogButtonBox *buttons();
    void fitToScreen(QScrollArea *rows);

    QList<Effect *> m_effects;
    QList<QCheckBox *> m_checks;
    bool m_mayCancel;
};
