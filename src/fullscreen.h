// A window over the whole of a screen that is remembered by its name.
#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>

class QScreen;
class QWidget;

// While the window is in full screen, the pointer goes when it has rested on it for three seconds.
class FullScreen : public QObject {
    Q_OBJECT

public:
    explicit FullScreen(QWidget *window);

    bool isOn() const { return m_isOn; }
    // Name of the screen that was chosen last, whether it is there or not.
    const QString &screenName() const { return m_screenName; }
    // The window's place when it isn't in full screen.
    QByteArray geometry() const;
    // For a window that was never shown: `isOn` puts it on that screen as soon as both are there.
    void restore(const QByteArray &geometry, const QString &screenName, bool isOn);

    // A shown window goes at once, if the screen is there.
    void enter(const QString &screenName);
    void leave();
    void toggle();

Q_SIGNALS:
    // The DM chose or left it.
    void doChosen();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void takeScreen();
    void watchPointer();
    void onScreenAdded(QScreen *screen);
    void onScreenRemoved(QScreen *screen);
    void showNormally();
    void restPointer();
    void wakePointer();

    QWidget *m_window;
    QTimer m_rest;
    QByteArray m_geometry; // before full screen
    QString m_screenName;
    bool m_isOn = false; // also while its screen is away
    bool m_isTaken = false;
    bool m_isPointerHidden = false;
};
