// The status bar's word that the data folder is only looked at, with the button that takes it over.
#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;

// Hidden until it has a reason. While it shows, it looks every other second whether the log's lock
// is free.
class LookOnlyBar : public QWidget {
    Q_OBJECT

public:
    explicit LookOnlyBar(QWidget *parent = nullptr);

    // Why nothing may be written, as LogLock tells it; empty when the folder is written to.
    void setReason(const QString &reason);

Q_SIGNALS:
    void takeOverAsked();

private:
    void look();
    void showReason(const QString &reason);

    QTimer m_timer;
    QLabel *m_label;
    QPushButton *m_button;
    bool m_isHeld = false; // by somebody else, when it was last looked at
};
