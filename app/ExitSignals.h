#pragma once

#include <memory>

class QSocketNotifier;

/// Lets TERM, INT and HUP end the event loop, nested ones included, with the exit code 128 + the
/// signal's number, so that a movie is finished and the settings are written. A second signal ends
/// the process at once. A signal that the parent has chosen to ignore stays ignored.
///
/// One in a process, after the application object and on its thread.
class ExitSignals
{
public:
    ExitSignals();
    ~ExitSignals();
    ExitSignals(const ExitSignals &) = delete;
    ExitSignals &operator=(const ExitSignals &) = delete;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
