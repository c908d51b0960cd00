#pragma once

#include <chrono>
#include <memory>
#include <thread>

/// Prepares the media library while nobody waits for it, on a thread of its own named
/// "MediaPreloader", so that neither the first film nor the first recording of a process has to.
class MediaPreloader
{
public:
    /// Begins after `delay`, so that the program's start has the machine to itself.
    explicit MediaPreloader(std::chrono::milliseconds delay);
    /// Drops the steps that have not begun, and gives the current one a fraction of a second; a
    /// longer one, such as making the list of plugins, goes on alone.
    ~MediaPreloader();
    MediaPreloader(const MediaPreloader &) = delete;
    MediaPreloader &operator=(const MediaPreloader &) = delete;

    /// False when it takes longer than `timeout`.
    [[nodiscard]] bool waitUntilDone(std::chrono::milliseconds timeout);

private:
    struct State;

    static void run(State &state, std::chrono::milliseconds delay);

    /// The thread's as well.
    const std::shared_ptr<State> m_state;
    std::thread m_thread;
};
