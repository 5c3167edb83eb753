#include "fullscreen.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace {

constexpr int PointerRest = 3000; // milliseconds

QScreen *screenOfName(const QString &name)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *screen : screens)
        if (screen->name() == name)
            return screen;
    return nullptr;
}

} // namespace

FullScreen::FullScreen(QWidget *window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
    m_rest.setSingleShot(true);
    m_rest.setInterval(PointerRest);
    connect(&m_rest, &QTimer::timeout, this, &FullScreen::restPointer);
    connect(qApp, &QGuiApplication::screenAdded, this, &FullScreen::onScreenAdded);
    connect(qApp, &QGuiApplication::screenRemoved, this, &FullScreen::onScreenRemoved);
}

QByteArray FullScreen::geometry() const
{
    return m_isTaken || m_window->isFullScreen() ? m_geometry : m_window->saveGeometry();
}

void FullScreen::restore(const QByteArray &geometry, const QString &screenName, bool isOn)
{
    m_window->restoreGeometry(geometry);
    // Only by the name of the screen: the one of the DM may stand where that of the players was.
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowFullScreen);
    m_screenName = screenName;
    m_isOn = isOn;
    QScreen *screen = isOn ? screenOfName(screenName) : nullptr;
    if (!screen)
        return;
    // In its size from the start, which what it holds is laid out for.
    m_geometry = m_window->saveGeometry();
    m_isTaken = true;
    m_window->setScreen(screen);
    m_window->setGeometry(screen->geometry());
    m_window->setWindowState(m_window->windowState() | Qt::WindowFullScreen);
}

void FullScreen::enter(const QString &screenName)
{
    m_screenName = screenName;
    m_isOn = true;
    takeScreen();
    Q_EMIT doChosen();
}

void FullScreen::leave()
{
    m_isOn = false;
    showNormally();
    Q_EMIT doChosen();
}

void FullScreen::toggle()
{
    if (m_window->isFullScreen())
        leave();
    else
        enter(m_window->screen()->name());
}

void FullScreen::takeScreen()
{
    QScreen *screen = screenOfName(m_screenName);
    if (!screen || !m_window->isVisible())
        return;
    if (!m_isTaken)
        m_geometry = m_window->saveGeometry();
    m_isTaken = true;
    // A window that fills another screen stays there unless it leaves that first.
    if (m_window->isFullScreen())
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowFullScreen);
    m_window->setScreen(screen);
    m_window->setGeometry(screen->geometry());
    m_window->showFullScreen();
    watchPointer();
}

void FullScreen::watchPointer()
{
    m_window->windowHandle()->installEventFilter(this);
    m_rest.start();
}

void FullScreen::showNormally()
{
    if (!m_isTaken)
        return;
    m_isTaken = false;
    wakePointer();
    m_rest.stop();
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowFullScreen);
    m_window->restoreGeometry(m_geometry);
}

void FullScreen::onScreenAdded(QScreen *screen)
{
    if (m_isOn && !m_isTaken && screen->name() == m_screenName)
        takeScreen();
}

// The toolkit moves the window to a screen that is left, which is that of the DM.
void FullScreen::onScreenRemoved(QScreen *screen)
{
    if (m_isTaken && screen->name() == m_screenName)
        showNormally();
}

bool FullScreen::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (watched == m_window && m_isTaken)
            watchPointer();
        else if (watched == m_window && m_isOn)
            QMetaObject::invokeMethod(this, &FullScreen::takeScreen, Qt::QueuedConnection);
        break;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
        if (watched != m_window && m_isTaken) {
            wakePointer();
            m_rest.start();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void FullScreen::restPointer()
{
    m_isPointerHidden = true;
    m_window->setCursor(Qt::BlankCursor);
}

void FullScreen::wakePointer()
{
    if (std::exchange(m_isPointerHidden, false))
        m_window->unsetCursor();
}

#include "moc_fullscreen.cpp"
