#pragma once

#include <chrono>

/// The threads that nobody joins, because what they call may never return: a sound server, a disk
/// on the network. Any thread.
///
/// While one of them runs, the process must not destroy what the libraries keep, as the thread may
/// still use it: main() asks allEnded() and otherwise ends the process without that.
namespace DetachedThreads
{

/// Held by such a thread, on its stack, for as long as it runs.
class Running
{
public:
    Running();
    ~Running();
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;
};

/// Waits for them, no longer than `bound`. False when one is still running then.
[[nodiscard]] bool allEnded(std::chrono::milliseconds bound);

/// Ends the process with that code, as the last act of main() when everything of the program's own
/// is written and closed. The libraries are torn down only if all of these threads end within
/// `bound`.
[[noreturn]] void exitProcess(int code, std::chrono::milliseconds bound);

} // namespace DetachedThreads
