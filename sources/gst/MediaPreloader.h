#pragma once

#include <chrono>
#include <memory>
#include <thread>

/// Gets the media library ready while nobody waits for it, on a thread of its own named
/// "MediaPreloader", so that neither the first film nor the first recording of a process has to.
class MediaPreloader
{
public:
    /// Begins after `delay`, for a start that is to have the machine to itself.
    explicit MediaPreloader(std::chrono::milliseconds delay);
    /// Leaves out what has not begun, and gives the rest a fraction of a second; what takes longer,
    /// as where the list of plugins is being made, goes on alone.
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
