#include "tests/media/RecordProbe.h"

namespace
{

constexpr int PROBE_TIMEOUT_MS = 90000;
constexpr char FAILURE[] = "failed: ";

} // namespace

RecordProbe::RecordProbe(const QStringList &arguments, const QString &preload)
{
    if (!preload.isEmpty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LD_PRELOAD", preload);
        m_process.setProcessEnvironment(environment);
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(RECORDPROBE), arguments);
    m_process.waitForStarted(PROBE_TIMEOUT_MS);
}

RecordProbe::~RecordProbe()
{
    kill();
}

bool RecordProbe::waitFor(const QByteArray &beginning)
{
    for (;;) {
        m_said += m_process.readAllStandardOutput();
        if (('\n' + m_said).contains('\n' + beginning))
            return true;
        if (m_process.state() == QProcess::NotRunning ||
            !m_process.waitForReadyRead(PROBE_TIMEOUT_MS)) {
            m_said += m_process.readAllStandardOutput();
            return ('\n' + m_said).contains('\n' + beginning);
        }
    }
}

bool RecordProbe::waitForEnd(int seconds)
{
    const bool ended = m_process.state() == QProcess::NotRunning ||
                       m_process.waitForFinished(seconds * 1000 + PROBE_TIMEOUT_MS);
    m_said += m_process.readAllStandardOutput();
    return ended && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

void RecordProbe::kill()
{
    m_process.kill();
    m_process.waitForFinished(PROBE_TIMEOUT_MS);
    m_said += m_process.readAllStandardOutput();
}

QString RecordProbe::failure() const
{
    for (const QByteArray &line : lines()) {
        if (line.startsWith(FAILURE))
            return QString::fromUtf8(line.mid(sizeof(FAILURE) - 1));
    }
    return {};
}
