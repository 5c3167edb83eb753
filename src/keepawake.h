// Keeps the desktop from blanking its screens while the players look at one of them.
#pragma once

#include <QObject>
#include <QPointer>

#include <array>
#include <optional>

class QThread;

// Asks those services of the desktop that are there, over the session bus, and waits for none of
// their answers. Does nothing where there is no bus. What was asked for ends with the object.
class KeepAwake : public QObject {
    Q_OBJECT

public:
    explicit KeepAwake(QObject *parent = nullptr);
    ~KeepAwake() override;

    void setWanted(bool wanted);
    bool isWanted() const { return m_isWanted; }

private:
    static constexpr int ServiceCount = 2;

    void connectToBus();
    void onConnected();
    void ask();
    void onAnswer(int service, uint cookie, int request);
    void release(int service, uint cookie);

    const QString m_busName; // of the toolkit for this object's connection
    QPointer<QThread> m_connecting;
    bool m_isConnected = false;
    bool m_isWanted = false;
    int m_request = 0; // number of the latest; a cookie for an earlier one is handed back
    std::array<std::optional<uint>, ServiceCount> m_cookies;
};
