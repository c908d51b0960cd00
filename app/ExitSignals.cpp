#include "app/ExitSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr int SIGNALS[] = {SIGTERM, SIGINT, SIGHUP};
/// A shell's exit code for a process that a signal has ended.
constexpr int SIGNALLED = 128;

/// They stay open when the program ends, because a signal may still arrive.
int pipeEnds[2] = {-1, -1};
std::atomic<bool> asked{false};
static_assert(std::atomic<bool>::is_always_lock_free, "used by a signal handler");

void askToEnd(int signal)
{
    const int error = errno;
    if (asked.exchange(true))
        _exit(SIGNALLED + signal);
    const auto number = static_cast<unsigned char>(signal);
    // The pipe is empty: this is the first signal.
    (void)!write(pipeEnds[1], &number, sizeof number);
    errno = error;
}

} // namespace

ExitSignals::ExitSignals()
{
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [] {
        unsigned char number = 0;
        if (read(pipeEnds[0], &number, sizeof number) == sizeof number)
            QCoreApplication::exit(SIGNALLED + number);
    });
    for (const int signal : SIGNALS) {
        struct sigaction action {
        };
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = askToEnd;
        action.sa_flags = SA_RESTART;
        sigaction(signal, &action, nullptr);
    }
}

ExitSignals::~ExitSignals() = default;
