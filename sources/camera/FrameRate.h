#pragma once

#include <cstdint>

/// Pictures a second from a count that grows, measured over at least a second. A value; the time is
/// in milliseconds of any monotonic clock.
class FrameRate
{
public:
    static constexpr std::int64_t WINDOW_MS = 1000;

    /// A count below the last one is that of another stream.
    void note(std::int64_t nowMs, std::uint64_t frames)
    {
        if (frames < m_frames || m_sinceMs < 0)
            *this = FrameRate(nowMs, frames);
        const std::int64_t elapsedMs = nowMs - m_sinceMs;
        if (elapsedMs < WINDOW_MS)
            return;
        m_perSecond =
            1000.0 * static_cast<double>(frames - m_frames) / static_cast<double>(elapsedMs);
        m_sinceMs = nowMs;
        m_frames = frames;
    }

    /// 0 until it is known.
    [[nodiscard]] double perSecond() const { return m_perSecond; }

    FrameRate() = default;

private:
    FrameRate(std::int64_t sinceMs, std::uint64_t frames)
        : m_sinceMs(sinceMs)
        , m_frames(frames)
    {
    }

    std::int64_t m_sinceMs = -1;
    std::uint64_t m_frames = 0;
    double m_perSecond = 0.0;
};
