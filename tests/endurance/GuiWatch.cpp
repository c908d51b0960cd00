#include "tests/endurance/GuiWatch.h"

#include "tests/ProcessorWait.h"

#include <QDir>

#include <algorithm>
#include <chrono>
#include <utility>

#include <unistd.h>

namespace
{

constexpr std::chrono::milliseconds PAUSE(50);
constexpr double NANOSECONDS = 1e6;

using Clock = std::chrono::steady_clock;

qint64 nanosecondsSince(Clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start).count();
}

} // namespace

GuiWatch::GuiWatch(std::vector<int> companions)
    : m_guiThread(static_cast<int>(getpid()))
    , m_companions(std::move(companions))
    , m_thread([this] { run(); })
{
}

GuiWatch::~GuiWatch()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

GuiWatch::Wait GuiWatch::takeLongest()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_longest, Wait());
}

GuiWatch::Delays GuiWatch::delays() const
{
    Delays found;
    const QStringList threads =
        QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads)
        found.own[thread.toInt()] = processorWaitNs("self/task/" + thread);
    for (const int process : m_companions)
        found.companions[process] = processorWaitNs(QString::number(process));
    return found;
}

GuiWatch::Wait GuiWatch::measured(qint64 nanoseconds, const Delays &before) const
{
    const Delays after = delays();
    const auto grown = [](const ByThread &earlier, const ByThread &later, int thread) {
        const auto old = earlier.find(thread);
        return later.at(thread) - (old == earlier.end() ? 0 : old->second);
    };
    qint64 others = 0;
    for (const auto &[thread, delay] : after.own) {
        if (thread != m_guiThread)
            others = std::max(others, grown(before.own, after.own, thread));
    }
    qint64 companions = 0;
    for (const auto &[process, delay] : after.companions)
        companions = std::max(companions, grown(before.companions, after.companions, process));
    const qint64 machine = grown(before.own, after.own, m_guiThread) + others + companions;
    return {static_cast<double>(nanoseconds) / NANOSECONDS,
            static_cast<double>(machine) / NANOSECONDS};
}

void GuiWatch::keep(const Wait &wait)
{
    const double left = wait.milliseconds - wait.machine;
    if (left > m_longest.milliseconds - m_longest.machine)
        m_longest = wait;
}

void GuiWatch::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_wake.wait_for(lock, PAUSE, [this] { return m_ends; })) {
        m_answered = false;
        lock.unlock();
        const Delays before = delays();
        const Clock::time_point asked = Clock::now();
        std::atomic<qint64> taken{0};
        QMetaObject::invokeMethod(
            &m_receiver,
            [this, asked, &taken] {
                taken = nanosecondsSince(asked);
                const std::lock_guard answer(m_mutex);
                m_answered = true;
                m_wake.notify_all();
            },
            Qt::QueuedConnection);
        lock.lock();
        m_wake.wait(lock, [this] { return m_answered || m_ends; });
        if (m_answered)
            keep(measured(taken, before));
    }
}
