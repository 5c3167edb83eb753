// The box of hit points in the tool bar of the DM's Display.
#pragma once

#include <QSpinBox>

// The keys of the actions reach them from here too, though a line edit would take Undo, Cut and
// Select All for itself.
class HPBox : public QSpinBox {
    Q_OBJECT

public:
    // The actions are the owner's children. It isn't the box's window: a tool bar may float.
    explicit HPBox(const QObject *actionsOwner);

    // Takes the focus, so that the next digit begins another number.
    void focusOnText();

protected:
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    bool isActionKey(const QKeyEvent &event) const;

    const QObject *m_actionsOwner;
};
