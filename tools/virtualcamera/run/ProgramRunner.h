#pragma once

#include "tools/virtualcamera/run/CameraConsole.h"
#include "tools/virtualcamera/run/RunOptions.h"

#include <QByteArray>

#include <chrono>
#include <sys/types.h>

/// Runs the program as a child, passes signals on to it, and meanwhile carries out the script and
/// the commands that come in. One thread.
class ProgramRunner
{
public:
    ProgramRunner(const RunOptions &options, CameraConsole console);
    ~ProgramRunner();
    ProgramRunner(const ProgramRunner &) = delete;
    ProgramRunner &operator=(const ProgramRunner &) = delete;

    /// Blocks the signals that are to be passed on; before any thread is started.
    static void blockSignals();

    /// The program's exit code, 128 and the signal's number if one ended it, 127 if it cannot be
    /// started, 2 if the options cannot be carried out.
    [[nodiscard]] int run();

private:
    [[nodiscard]] bool openCommands();
    [[nodiscard]] bool start();
    [[noreturn]] void becomeProgram() const;
    void serve();
    [[nodiscard]] int millisecondsToNextStep() const;
    void runDueSteps();
    void readCommands();
    void readSignals();
    bool command(const QString &line);

    using Clock = std::chrono::steady_clock;

    const RunOptions &m_options;
    CameraConsole m_console;
    std::size_t m_nextStep = 0;
    QByteArray m_partialLine;
    Clock::time_point m_started;
    pid_t m_child = -1;
    int m_signals = -1;
    int m_commands = -1;
    int m_exitStatus = 0; ///< as waitpid() gives it
    bool m_ended = false;
    bool m_asked = false; ///< a request to end was passed on already
};
