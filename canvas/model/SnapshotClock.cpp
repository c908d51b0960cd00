#include "canvas/model/SnapshotClock.h"

void SnapshotClock::arm(const Schedule &schedule, std::int64_t nowMs)
{
    m_schedule = schedule;
    m_armed = true;
    m_startMs = nowMs;
    m_lastShotSecond = 0;
}

void SnapshotClock::disarm()
{
    m_armed = false;
}

bool SnapshotClock::isSeriesArmed() const
{
    return m_armed && m_schedule.mode == CanvasModes::Continuous;
}

bool SnapshotClock::isDue(std::int64_t nowMs) const
{
    if (!m_armed || m_schedule.mode != CanvasModes::Continuous)
        return m_armed;
    const std::uint64_t second = secondAt(nowMs);
    return second - m_lastShotSecond >= m_schedule.intervalSeconds ||
           second >= m_schedule.limitSeconds;
}

bool SnapshotClock::takePicture(std::int64_t nowMs)
{
    if (!m_armed)
        return false;
    if (m_schedule.mode != CanvasModes::Continuous) {
        m_armed = false;
        return true;
    }
    const std::uint64_t second = secondAt(nowMs);
    const bool due = second - m_lastShotSecond >= m_schedule.intervalSeconds;
    if (due)
        m_lastShotSecond = second;
    if (second >= m_schedule.limitSeconds)
        m_armed = false;
    return due;
}

std::uint64_t SnapshotClock::secondAt(std::int64_t nowMs) const
{
    return static_cast<std::uint64_t>((nowMs - m_startMs) / 1000);
}
