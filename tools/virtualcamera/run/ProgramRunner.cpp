#include "tools/virtualcamera/run/ProgramRunner.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

constexpr int CANNOT_START = 127, BAD_OPTIONS = 2;

sigset_t handledSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGQUIT})
        sigaddset(&set, number);
    return set;
}

} // namespace

ProgramRunner::ProgramRunner(const RunOptions &options, CameraConsole console)
    : m_options(options)
    , m_console(console)
{
}

ProgramRunner::~ProgramRunner()
{
    for (const int descriptor : {m_signals, m_commands}) {
        if (descriptor > STDERR_FILENO)
            ::close(descriptor);
    }
}

void ProgramRunner::blockSignals()
{
    const sigset_t set = handledSignals();
    ::sigprocmask(SIG_BLOCK, &set, nullptr);
}

int ProgramRunner::run()
{
    const sigset_t set = handledSignals();
    m_signals = ::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (m_signals < 0 || !openCommands())
        return BAD_OPTIONS;
    for (const QString &line : m_options.firstCommands) {
        if (!command(line))
            return BAD_OPTIONS;
    }
    m_started = Clock::now();
    while (m_nextStep < m_options.script.size() && m_options.script[m_nextStep].seconds <= 0)
        command(m_options.script[m_nextStep++].command);
    if (!start())
        return CANNOT_START;
    while (!m_ended)
        serve();
    return WIFSIGNALED(m_exitStatus) ? 128 + WTERMSIG(m_exitStatus) : WEXITSTATUS(m_exitStatus);
}

bool ProgramRunner::openCommands()
{
    if (m_options.commandPath.isEmpty())
        return true;
    if (m_options.commandPath == QLatin1String("-")) {
        m_commands = STDIN_FILENO;
        return true;
    }
    const QByteArray path = m_options.commandPath.toLocal8Bit();
    if (::mkfifo(path.constData(), 0600) != 0 && errno != EEXIST)
        std::fprintf(stderr, "%s: %s\n", path.constData(), std::strerror(errno));
    // For reading and writing, so that it does not end with its first writer.
    m_commands = ::open(path.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    return m_commands >= 0;
}

bool ProgramRunner::start()
{
    m_child = ::fork();
    if (m_child == 0)
        becomeProgram();
    return m_child > 0;
}

void ProgramRunner::becomeProgram() const
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    const sigset_t set = handledSignals();
    ::sigprocmask(SIG_UNBLOCK, &set, nullptr);
    if (m_commands == STDIN_FILENO) {
        const int nothing = ::open("/dev/null", O_RDONLY);
        ::dup2(nothing, STDIN_FILENO);
    }
    std::vector<QByteArray> texts;
    texts.reserve(static_cast<std::size_t>(m_options.program.size()));
    for (const QString &argument : m_options.program)
        texts.push_back(argument.toLocal8Bit());
    std::vector<char *> arguments;
    arguments.reserve(texts.size() + 1);
    for (QByteArray &text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    ::execvp(arguments[0], arguments.data());
    std::fprintf(stderr, "%s: %s\n", arguments[0], std::strerror(errno));
    ::_exit(CANNOT_START);
}

void ProgramRunner::serve()
{
    pollfd sources[] = {{m_signals, POLLIN, 0}, {m_commands, POLLIN, 0}};
    ::poll(sources, 2, millisecondsToNextStep());
    runDueSteps();
    if (sources[0].revents & POLLIN)
        readSignals();
    if (sources[1].revents & (POLLIN | POLLHUP))
        readCommands();
}

/// -1 for no further step.
int ProgramRunner::millisecondsToNextStep() const
{
    if (m_nextStep >= m_options.script.size())
        return -1;
    const auto due =
        m_started + std::chrono::duration<double>(m_options.script[m_nextStep].seconds);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - Clock::now()).count();
    return static_cast<int>(std::clamp<long>(left, 0, 60000));
}

void ProgramRunner::runDueSteps()
{
    const std::chrono::duration<double> elapsed = Clock::now() - m_started;
    while (m_nextStep < m_options.script.size() &&
           m_options.script[m_nextStep].seconds <= elapsed.count())
        command(m_options.script[m_nextStep++].command);
}

void ProgramRunner::readCommands()
{
    char bytes[4096];
    const ssize_t count = ::read(m_commands, bytes, sizeof bytes);
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
        m_commands = -1; // the end of the standard input
        return;
    }
    m_partialLine.append(bytes, static_cast<int>(std::max<ssize_t>(count, 0)));
    for (int end = m_partialLine.indexOf('\n'); end >= 0; end = m_partialLine.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_partialLine.left(end));
        m_partialLine.remove(0, end + 1);
        command(line);
    }
}

void ProgramRunner::readSignals()
{
    signalfd_siginfo signal{};
    while (::read(m_signals, &signal, sizeof signal) == sizeof signal) {
        if (signal.ssi_signo == SIGCHLD) {
            m_ended = m_ended || ::waitpid(m_child, &m_exitStatus, WNOHANG) == m_child;
        } else if (signal.ssi_code != SI_KERNEL) {
            // One from the terminal has reached the program by itself.
            ::kill(m_child, m_asked ? SIGKILL : static_cast<int>(signal.ssi_signo));
            m_asked = true;
        }
    }
}

/// False if it could not be carried out; the reason is on the standard error then.
bool ProgramRunner::command(const QString &line)
{
    if (line.trimmed() == QLatin1String("quit")) {
        ::kill(m_child, SIGTERM);
        return true;
    }
    QString message;
    const bool done = m_console.run(line, message);
    if (!message.isEmpty())
        std::fprintf(stderr, "[camera] %s\n", message.toLocal8Bit().constData());
    return done;
}
