#include "keepawake.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QThread>

namespace {

struct Service {
    QLatin1String name;
    QLatin1String path;
    QLatin1String interface;
};

// The first is of the desktops that lock and blank by a screen saver, the second of those that
// leave it to the power management. Where both are there, each wants to be asked.
constexpr Service Services[] = {
    {QLatin1String("org.freedesktop.ScreenSaver"), QLatin1String("/org/freedesktop/ScreenSaver"),
     QLatin1String("org.freedesktop.ScreenSaver")},
    {QLatin1String("org.freedesktop.PowerManagement"),
     QLatin1String("/org/freedesktop/PowerManagement/Inhibit"),
     QLatin1String("org.freedesktop.PowerManagement.Inhibit")},
};

QDBusMessage callOf(int service, const char *method)
{
    const Service &called = Services[service];
    QDBusMessage message = QDBusMessage::createMethodCall(called.name, called.path,
                                                          called.interface, QLatin1String(method));
    message.setAutoStartService(false);
    return message;
}

// Without a look first, the bus's own library would start one.
bool hasSessionBus()
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")
        || (!folder.isEmpty() && QFile::exists(folder + QStringLiteral("/bus")));
}

QString nextBusName()
{
    static int count = 0;
    return QStringLiteral("keepAwake%1").arg(++count);
}

} // namespace

KeepAwake::KeepAwake(QObject *parent) : QObject(parent), m_busName(nextBusName())
{
    static_assert(std::size(Services) == ServiceCount);
}

KeepAwake::~KeepAwake()
{
    setWanted(false);
    // The services also let go of what a connection asked for that is closed.
    if (m_isConnected)
        QDBusConnection::disconnectFromBus(m_busName);
}

void KeepAwake::setWanted(bool wanted)
{
    if (wanted == m_isWanted)
        return;
    m_isWanted = wanted;
    ++m_request;
    if (wanted) {
        if (m_isConnected)
            ask();
        else
            connectToBus();
        return;
    }
    for (int service = 0; service < ServiceCount; ++service)
        if (const auto cookie = std::exchange(m_cookies[service], std::nullopt))
            release(service, *cookie);
}

// In a thread, since the toolkit waits for the bus's greeting, which a bus that hangs never sends.
void KeepAwake::connectToBus()
{
    if (m_connecting || !hasSessionBus())
        return;
    m_connecting = QThread::create(
        [name = m_busName] { QDBusConnection::connectToBus(QDBusConnection::SessionBus, name); });
    connect(m_connecting, &QThread::finished, this, &KeepAwake::onConnected);
    connect(m_connecting, &QThread::finished, m_connecting, &QObject::deleteLater);
    m_connecting->start();
}

void KeepAwake::onConnected()
{
    m_connecting = nullptr;
    m_isConnected = QDBusConnection(m_busName).isConnected();
    if (!m_isConnected)
        QDBusConnection::disconnectFromBus(m_busName);
    else if (m_isWanted)
        ask();
}

void KeepAwake::ask()
{
    for (int service = 0; service < ServiceCount; ++service) {
        QDBusMessage message = callOf(service, "Inhibit");
        message << tr("Morvane") << tr("The players watch an encounter");
        auto *watcher =
            new QDBusPendingCallWatcher(QDBusConnection(m_busName).asyncCall(message), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this,
                [this, watcher, service, request = m_request] {
                    const QDBusPendingReply<uint> reply = *watcher;
                    if (reply.isValid())
                        onAnswer(service, reply.value(), request);
                    watcher->deleteLater();
                });
    }
}

void KeepAwake::onAnswer(int service, uint cookie, int request)
{
    if (request == m_request)
        m_cookies[service] = cookie;
    else
        release(service, cookie);
}

void KeepAwake::release(int service, uint cookie)
{
    QDBusMessage message = callOf(service, "UnInhibit");
    message << cookie;
    QDBusConnection(m_busName).asyncCall(message);
}

#include "moc_keepawake.cpp"
