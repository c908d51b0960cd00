#include "tests/endurance/GuiWatch.h"
#include "tests/endurance/WindowReport.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>

#include <vector>

#include <unistd.h>

namespace
{

/// Tells whoever asks at a socket how the window stands: a line asks, a line of JSON answers.
/// Requests are "commands", "state", "picture" (the state with a fingerprint of the picture) and
/// "census".
class Witness : public QObject
{
public:
    Witness(const QString &socket, QObject *parent)
        : QObject(parent)
    {
        QLocalServer::removeServer(socket);
        connect(&m_server, &QLocalServer::newConnection, this, [this] { accept(); });
        if (!m_server.listen(socket))
            qFatal("no witness at %s", qPrintable(socket));
    }

private:
    void accept()
    {
        QLocalSocket *asker = m_server.nextPendingConnection();
        connect(asker, &QLocalSocket::disconnected, asker, &QObject::deleteLater);
        connect(asker, &QLocalSocket::readyRead, this, [this, asker] {
            while (asker->canReadLine()) {
                asker->write(QJsonDocument(answer(asker->readLine().trimmed()))
                                 .toJson(QJsonDocument::Compact) +
                             '\n');
                asker->flush();
            }
        });
    }

    QJsonObject answer(const QByteArray &request)
    {
        if (request == "commands")
            return {{"commands", WindowReport::commands()}};
        if (request == "census")
            return m_report.census();
        QJsonObject state = m_report.state(request == "picture");
        const GuiWatch::Wait wait = m_watch.takeLongest();
        state["waited"] = wait.milliseconds;
        state["machine"] = wait.machine;
        return state;
    }

    /// Its environment names the processes that the window waits for, beside the one that started
    /// it.
    static std::vector<int> companions()
    {
        std::vector<int> found{getppid()};
        for (const QString &number : qEnvironmentVariable("WITNESS_COMPANIONS").split(','))
            found.push_back(number.toInt());
        return found;
    }

    QLocalServer m_server;
    WindowReport m_report;
    GuiWatch m_watch{companions()};
};

/// Only a program that a teacher has started is watched.
void watch()
{
    const QString socket = qEnvironmentVariable("WITNESS_SOCKET");
    if (socket.isEmpty())
        return;
    // Once the event loop runs, the application is complete.
    QMetaObject::invokeMethod(
        qApp,
        [socket] {
            auto *witness = new Witness(socket, nullptr);
            QObject::connect(qApp, &QCoreApplication::aboutToQuit, witness,
                             [witness] { delete witness; });
        },
        Qt::QueuedConnection);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watch)
