#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Gets the media library ready while nobody waits for it, on a thread of its own named
/// "MediaWarmUp", so that neither the first film nor the first recording of a process has to.
class MediaWarmUp
{
public:
    /// Begins after `delay`, for a start that is to have the machine to itself.
    explicit MediaWarmUp(std::chrono::milliseconds delay);
    /// Leaves out what has not begun, and waits for the rest.
    ~MediaWarmUp();
    MediaWarmUp(const MediaWarmUp &) = delete;
    MediaWarmUp &operator=(const MediaWarmUp &) = delete;

    /// False when it takes longer than `patience`.
    [[nodiscard]] bool waitUntilDone(std::chrono::milliseconds patience);

private:
    void run(std::chrono::milliseconds delay);

    /// Guards m_stopping and m_done.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_stopping = false;
    bool m_done = false;
    std::thread m_thread;
};
