#pragma once

#include "tests/Timeout.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QProcess>
#include <QVector>

#include <csignal>

/// A bus of a test's own in the place of the system's.
class SystemBus
{
public:
    SystemBus()
    {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        if (m_daemon.waitForStarted(TIMEOUT_MS) && m_daemon.waitForReadyRead(TIMEOUT_MS))
            m_address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_address);
    }
    ~SystemBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
        qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }
    SystemBus(const SystemBus &) = delete;
    SystemBus &operator=(const SystemBus &) = delete;

    [[nodiscard]] QByteArray address() const { return m_address; }
    void sendSignal(int number) const { kill(static_cast<pid_t>(m_daemon.processId()), number); }

private:
    QProcess m_daemon;
    QByteArray m_address;
};

/// Stands for the service that gives threads a priority, on that bus for as long as it lives.
class PriorityService : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.RealtimeKit1")

public:
    struct Request {
        qulonglong thread;
        int priority;
    };
    enum class Answer { Granted, Refused, None };

    explicit PriorityService(const SystemBus &bus, Answer to = Answer::Granted)
        : answer(to)
    {
        QDBusConnection connection =
            QDBusConnection::connectToBus(QString(bus.address()), CONNECTION);
        m_serving = connection.registerObject(PATH, this, QDBusConnection::ExportAllSlots) &&
                    connection.registerService("org.freedesktop.RealtimeKit1");
    }
    ~PriorityService() override
    {
        // The connection is closed by a thread of its own, which must not find the object by then.
        QDBusConnection(CONNECTION).unregisterObject(PATH);
        disconnect();
        QDBusConnection::disconnectFromBus(CONNECTION);
    }

    [[nodiscard]] bool serving() const { return m_serving; }
    Answer answer;
    QVector<Request> requests;

public slots:
    void MakeThreadHighPriority(qulonglong thread, int priority) // NOLINT: the service's name
    {
        requests.append({thread, priority});
        if (answer == Answer::Refused)
            sendErrorReply(QDBusError::AccessDenied);
        else if (answer == Answer::None)
            setDelayedReply(true);
    }

private:
    inline static const QString PATH = QStringLiteral("/org/freedesktop/RealtimeKit1");
    inline static const QString CONNECTION = QStringLiteral("the service's");
    bool m_serving = false;
};
