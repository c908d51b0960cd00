#include "tests/media/SoundServer.h"

#include "tests/Timeout.h"

#include <QDir>
#include <QElapsedTimer>

#include <csignal>
#include <utility>

SoundServer::SoundServer(const QString &folder, Kind kind)
    : m_folder(folder)
    , m_kind(kind)
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

QString SoundServer::socket() const
{
    return m_folder + (m_kind == Kind::PulseAudio ? "/pulse.sock" : "/pulse/native");
}

void SoundServer::startPulseAudio()
{
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_server.start(
        QStringLiteral("pulseaudio"),
        {"-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "--disable-shm=yes",
         "--log-level=0", "-L",
         QStringLiteral("module-native-protocol-unix socket=%1 auth-anonymous=1").arg(socket()),
         "-L", "module-null-sink sink_name=room rate=44100 channels=1"});
}

bool SoundServer::startPipeWire()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PIPEWIRE_RUNTIME_DIR", m_folder);
    environment.insert("PULSE_RUNTIME_PATH", m_folder + "/pulse");
    environment.insert("PIPEWIRE_DEBUG", "0");
    environment.insert("WIREPLUMBER_DEBUG", "0");
    for (QProcess *each : {&m_graph, &m_manager, &m_server}) {
        each->setProcessEnvironment(environment);
        each->setStandardErrorFile(QProcess::nullDevice());
    }
    QFile::remove(m_folder + "/pipewire-0");
    m_graph.start("pipewire", QStringList());
    QElapsedTimer waited;
    waited.start();
    while (!QFile::exists(m_folder + "/pipewire-0")) {
        if (waited.elapsed() > TIMEOUT_MS || m_graph.waitForFinished(10))
            return false;
    }
    // It speaks with others of its kind over a session bus.
    m_manager.start("dbus-run-session", {"--", "wireplumber"});
    m_server.start("pipewire-pulse", QStringList());
    return true;
}

bool SoundServer::start(const QString &microphoneProperties)
{
    QFile::remove(socket());
    qputenv("PULSE_SERVER", QByteArray("unix:") + QFile::encodeName(socket()));
    if (m_kind == Kind::PulseAudio)
        startPulseAudio();
    else if (!startPipeWire())
        return false;
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
    for (QProcess *each : {&m_server, &m_graph}) {
        if (each->state() == QProcess::NotRunning)
            continue;
        each->kill();
        each->waitForFinished(TIMEOUT_MS);
    }
    // It ends by itself when there is nothing to manage, and takes its bus with it.
    if (m_manager.state() != QProcess::NotRunning)
        m_manager.waitForFinished(TIMEOUT_MS);
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
