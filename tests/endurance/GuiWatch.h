#pragma once

#include <QObject>

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

/// Asks the GUI thread for an answer twenty times a second, from a thread of its own, and keeps the
/// longest wait. Of each wait it knows how much was the machine's: how long the GUI thread, the
/// thread of the program that waited longest beside it, and the process that waited longest among
/// those that it asks, as the display server, stood ready to run without a processor.
class GuiWatch
{
public:
    /// Begins. `companions` are the processes that the GUI thread may wait for. GUI thread.
    explicit GuiWatch(std::vector<int> companions);
    ~GuiWatch();
    GuiWatch(const GuiWatch &) = delete;
    GuiWatch &operator=(const GuiWatch &) = delete;

    struct Wait {
        double milliseconds = 0;
        /// Of these, what the machine gave to others.
        double machine = 0;
    };
    /// The longest since the last call, by what is left of it without the machine's part. GUI
    /// thread.
    Wait takeLongest();

private:
    /// By thread, the nanoseconds for which it has been ready to run without a processor.
    using ByThread = std::map<int, qint64>;
    struct Delays {
        ByThread own;
        ByThread companions;
    };
    [[nodiscard]] Delays delays() const;

    void run();
    void keep(const Wait &wait);
    [[nodiscard]] Wait measured(qint64 nanoseconds, const Delays &before) const;

    const int m_guiThread;
    const std::vector<int> m_companions;
    QObject m_receiver;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    // Guarded by m_mutex
    bool m_ends = false;
    bool m_answered = false;
    Wait m_longest;

    std::thread m_thread;
};
