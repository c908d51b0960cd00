#pragma once

#include <QFile>
#include <QString>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

/// How late the machine is while something is recorded: a thread that has nothing else to do wants
/// to write a few bytes to the disk every 50 ms. What delays it delays a recording as well, and is
/// no fault of it. Any thread.
class Lateness
{
public:
    using Clock = std::chrono::steady_clock;

    /// Its file lies in `folder`.
    explicit Lateness(const QString &folder)
        : m_file(folder + "/lateness")
        , m_thread([this] { run(); })
    {
    }
    ~Lateness()
    {
        m_ended = true;
        m_thread.join();
    }
    Lateness(const Lateness &) = delete;
    Lateness &operator=(const Lateness &) = delete;

    /// The most that it was late between the two, in seconds.
    [[nodiscard]] double most(Clock::time_point from, Clock::time_point to) const
    {
        const std::lock_guard lock(m_mutex);
        double most = 0;
        for (const Turn &turn : m_turns) {
            if (turn.end >= from && turn.begin <= to)
                most = std::max(
                    most, std::chrono::duration<double>(turn.end - turn.begin - INTERVAL).count());
        }
        return most;
    }

private:
    static constexpr std::chrono::milliseconds INTERVAL{50};

    struct Turn {
        Clock::time_point begin;
        Clock::time_point end;
    };

    void run()
    {
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return;
        while (!m_ended) {
            const Clock::time_point begin = Clock::now();
            std::this_thread::sleep_for(INTERVAL);
            m_file.seek(0);
            m_file.write(QByteArray(512, 'x'));
            fdatasync(m_file.handle());
            const std::lock_guard lock(m_mutex);
            m_turns.push_back({begin, Clock::now()});
        }
    }

    QFile m_file;
    std::atomic<bool> m_ended{false};
    /// Guards m_turns.
    mutable std::mutex m_mutex;
    std::vector<Turn> m_turns;
    std::thread m_thread;
};
