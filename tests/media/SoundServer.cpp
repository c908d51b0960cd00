#include "tests/media/SoundServer.h"

#include "tests/Timeout.h"

#include <QDir>
#include <QElapsedTimer>

#include <csignal>
#include <utility>

SoundServer::SoundServer(const QString &folder)
    : m_folder(folder)
{
    QDir().mkpath(folder);
}

SoundServer::~SoundServer()
{
    freeze(false);
    kill();
}

bool SoundServer::control(const QStringList &arguments)
{
    QProcess pactl;
    pactl.start(QStringLiteral("pactl"), arguments);
    return pactl.waitForFinished(TIMEOUT_MS) && pactl.exitCode() == 0;
}

bool SoundServer::start(const QString &microphoneProperties)
{
    const QString socket = m_folder + QStringLiteral("/pulse.sock");
    QFile::remove(socket);
    qputenv("PULSE_SERVER", QByteArray("unix:") + QFile::encodeName(socket));
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_server.start(
        QStringLiteral("pulseaudio"),
        {"-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "--disable-shm=yes",
         "--log-level=0", "-L",
         QStringLiteral("module-native-protocol-unix socket=%1 auth-anonymous=1").arg(socket), "-L",
         "module-null-sink sink_name=room rate=44100 channels=1"});
    QElapsedTimer waited;
    waited.start();
    while (!control({"info"})) {
        if (waited.elapsed() > TIMEOUT_MS || m_server.state() == QProcess::NotRunning)
            return false;
    }
    return microphoneProperties.isEmpty() || plugMicrophone(microphoneProperties);
}

bool SoundServer::plugMicrophone(const QString &properties)
{
    QFile::remove(pipe());
    return control({"load-module", "module-pipe-source", "source_name=cam_mic", "file=" + pipe(),
                    "format=s16le", "rate=44100", "channels=1",
                    QStringLiteral("source_properties='%1'").arg(properties)});
}

bool SoundServer::plugOther(const QString &name, int rate, int channels)
{
    // What a server that was killed has left.
    QFile::remove(otherPipe(name));
    QProcess pactl;
    pactl.start(QStringLiteral("pactl"),
                {"load-module", "module-pipe-source", "source_name=" + name,
                 "file=" + otherPipe(name), "format=s16le", QStringLiteral("rate=%1").arg(rate),
                 QStringLiteral("channels=%1").arg(channels),
                 QStringLiteral("source_properties='device.description=\"%1\"'").arg(name)});
    if (!pactl.waitForFinished(TIMEOUT_MS) || pactl.exitCode() != 0)
        return false;
    m_others << QString::fromLatin1(pactl.readAllStandardOutput()).trimmed();
    return true;
}

bool SoundServer::plugCopy(const QString &name)
{
    return control({"load-module", "module-remap-source", "source_name=" + name, "master=cam_mic",
                    QStringLiteral("source_properties='device.description=\"%1\"'").arg(name)});
}

bool SoundServer::unplugOthers()
{
    bool done = true;
    for (const QString &module : std::exchange(m_others, {}))
        done = control({"unload-module", module}) && done;
    return done;
}

bool SoundServer::unplugMicrophone()
{
    return control({"unload-module", "module-pipe-source"});
}

void SoundServer::kill()
{
    if (m_server.state() == QProcess::NotRunning)
        return;
    m_server.kill();
    m_server.waitForFinished(TIMEOUT_MS);
}

void SoundServer::freeze(bool frozen)
{
    if (m_server.processId() > 0)
        ::kill(static_cast<pid_t>(m_server.processId()), frozen ? SIGSTOP : SIGCONT);
}

void SoundServer::pretendAbsent()
{
    qputenv("PULSE_SERVER", QByteArray("unix:") + QFile::encodeName(m_folder + "/nobody.sock"));
}
