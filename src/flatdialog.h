// A dialog without a window of its own: it runs inside the main window, in place of the initiative
// list, so that the screen next to the players stays free.
#pragma once

#include <QEventLoop>
#include <QWidget>

#include "windowsanddialogs.h"

class Creature;
class QAbstractButton;
class QDialogButtonBox;

// Runs on the stack of its caller. Escape rejects it and Return accepts it; closing the main window
// rejects it.
class FlatDialog : public QWidget, public WindowsAndDialogs {
    Q_OBJECT

public:
    explicit FlatDialog(const QString &title, QWidget *parent = nullptr);

    // The widget that the main window shows and focuses: the dialog itself, whose focus proxy says
    // which of its fields gets the keys.
    virtual QWidget *focusWidget();
    // Any number but 0 stretches the dialog to the page, for one with a table; with 0 it keeps its
    // own height and the page scrolls.
    virtual int widgetCount() const;
    // Runs after the dialog has left the page and before exec() returns.
    virtual void onFinished();
    // 0 when rejected, 1 when accepted, or what done() was given.
    virtual int exec();
    // Centred between two stretches.
    virtual void setContent(QWidget *content);
    virtual void accept();
    virtual void done(int result);
    virtual void reject();

protected:
    struct Button {
        QString text;
        int result; // what exec() returns for it
    };
    // A row of push buttons in this order, which the dialog connects itself. A button's object name
    // is its text without blanks, in lower camel case, and "Button".
    static QDialogButtonBox *buttonRow(const QList<Button> &buttons);
    static int resultOf(const QAbstractButton *button);
    // "okButton", the default, accepts, and "cancelButton" rejects.
    QDialogButtonBox *okCancelRow();
    // Shows the creature that the dialog asks about in the panel of the current creature; null
    // empties it. returnPanel() shows the current creature again.
    static void showInPanel(Creature *creature);
    static void returnPanel();
    // The players see the creature with that rich text; null ends it.
    static void tellPlayers(Creature *creature, const QString &message = {});

    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    QEventLoop m_eventLoop;
};
