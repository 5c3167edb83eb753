// links: morvane_ui
//
// The desktop's services that keep a screen on, on a bus of the test's own.
#include <QApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include "encounter.h"
#include "keepawake.h"
#include "playerswindow.h"
#include "testfight.h"
#include "testhome.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// A service of the desktop.
class Inhibitor : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    int askedCount = 0;
    int unknownCount = 0; // cookies given back that nobody holds
    QSet<uint> held;
    bool answersLate = false;
    QList<QDBusMessage> waiting;

public Q_SLOTS:
    uint Inhibit(const QString &application, const QString &reason)
    {
        if (application.isEmpty() || reason.isEmpty())
            return 0;
        ++askedCount;
        held << uint(askedCount);
        if (answersLate) {
            setDelayedReply(true);
            waiting << message().createReply(QVariant(uint(askedCount)));
        }
        return uint(askedCount);
    }
    void UnInhibit(uint cookie)
    {
        if (!held.remove(cookie))
            ++unknownCount;
    }
};

class PowerInhibitor : public Inhibitor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.PowerManagement.Inhibit")
};

class KeepAwakeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { failOnWarnings(); }
    void cleanup();
    void asksAndReleases();
    void givesBackALateAnswer();
    void followsTheWindow();
    void nobodyThere();
    void waitsForNoBus();
    void cleanupTestCase();

private:
    void offer(Inhibitor &service, const char *name, const char *path);

    QProcess m_daemon;
    QByteArray m_address;
    std::unique_ptr<QDBusConnection> m_desktop;
    QStringList m_names;
    QStringList m_paths;
};

void KeepAwakeTest::initTestCase()
{
    if (QStandardPaths::findExecutable(u"dbus-daemon"_s).isEmpty())
        QSKIP("there is no dbus-daemon");
    m_daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    QVERIFY(m_daemon.waitForReadyRead());
    m_address = m_daemon.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
    m_desktop = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToBus(QString::fromLatin1(m_address), u"desktop"_s));
    QVERIFY(m_desktop->isConnected());
}

void KeepAwakeTest::offer(Inhibitor &service, const char *name, const char *path)
{
    m_names << QLatin1String(name);
    m_paths << QLatin1String(path);
    QVERIFY(m_desktop->registerObject(m_paths.last(), &service, QDBusConnection::ExportAllSlots));
    QVERIFY(m_desktop->registerService(m_names.last()));
}

void KeepAwakeTest::cleanup()
{
    for (const QString &path : std::as_const(m_paths))
        m_desktop->unregisterObject(path);
    for (const QString &name : std::as_const(m_names))
        m_desktop->unregisterService(name);
    m_paths.clear();
    m_names.clear();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
}

void KeepAwakeTest::cleanupTestCase()
{
    m_desktop.reset();
    QDBusConnection::disconnectFromBus(u"desktop"_s);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

void KeepAwakeTest::asksAndReleases()
{
    Inhibitor screen;
    PowerInhibitor power;
    offer(screen, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
    offer(power, "org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit");
    auto awake = std::make_unique<KeepAwake>();
    for (int times = 1; times <= 2; ++times) {
        awake->setWanted(true);
        awake->setWanted(true);
        QTRY_VERIFY(!screen.held.isEmpty() && !power.held.isEmpty());
        QCOMPARE(screen.askedCount, times);
        QCOMPARE(power.askedCount, times);
        if (times == 1)
            awake->setWanted(false);
        else
            awake.reset(); // as at the end of the program
        QTRY_VERIFY(screen.held.isEmpty() && power.held.isEmpty());
    }
    QCOMPARE(screen.unknownCount + power.unknownCount, 0);
}

// The encounter may stop before the service has answered, and another start.
void KeepAwakeTest::givesBackALateAnswer()
{
    Inhibitor screen;
    screen.answersLate = true;
    offer(screen, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
    KeepAwake awake;
    for (int times = 1; times <= 2; ++times) {
        awake.setWanted(true);
        QTRY_COMPARE(screen.askedCount, times);
        if (times == 1)
            awake.setWanted(false);
    }
    for (const QDBusMessage &answer : std::as_const(screen.waiting))
        m_desktop->send(answer);
    QTRY_COMPARE(screen.held, QSet<uint> {2});
    awake.setWanted(false);
    QTRY_VERIFY(screen.held.isEmpty());
    QCOMPARE(screen.unknownCount, 0);
}

void KeepAwakeTest::followsTheWindow()
{
    TestFight fight;
    auto window = std::make_unique<PlayersWindow>();
    const auto *awake = window->findChild<KeepAwake *>();
    TestFight::setRoster({u"Aria"_s, u"Rat (1)"_s});
    window->show();
    QVERIFY(!awake->isWanted());
    theEncounter->setPosition({1, 0, {}});
    QVERIFY(awake->isWanted());
    window->close();
    QVERIFY(!awake->isWanted());
    window->show();
    QVERIFY(awake->isWanted());
    theEncounter->setPosition({});
    QVERIFY(!awake->isWanted());
}

void KeepAwakeTest::nobodyThere()
{
    KeepAwake awake;
    awake.setWanted(true); // a bus without such a service
    for (const char *address : {"", "unix:path=/nonexistent/bus", "no address at all"}) {
        Inhibitor screen;
        offer(screen, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        KeepAwake without;
        without.setWanted(true);
        // The bus may come later.
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
        const auto askAgain = [&] {
            without.setWanted(false);
            without.setWanted(true);
            return screen.askedCount > 0;
        };
        QTRY_VERIFY(askAgain());
        cleanup();
    }
}

// A bus that takes the connection and says nothing.
void KeepAwakeTest::waitsForNoBus()
{
    const QByteArray path = qgetenv("HOME") + "/silent";
    const int silent = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un place {};
    place.sun_family = AF_UNIX;
    qstrncpy(place.sun_path, path.constData(), sizeof(place.sun_path));
    QCOMPARE(::bind(silent, reinterpret_cast<const sockaddr *>(&place), sizeof(place)), 0);
    QCOMPARE(::listen(silent, 4), 0);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
    QElapsedTimer timer;
    timer.start();
    {
        KeepAwake awake;
        awake.setWanted(true);
        awake.setWanted(false);
        awake.setWanted(true);
    }
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    ::close(silent);
}

MORVANE_TEST_MAIN(QApplication, KeepAwakeTest)
#include "tst_keepawake.moc"
