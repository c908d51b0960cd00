#pragma once

#include "settings/CanvasModes.h"

#include <cstdint>

/// Decides at which pictures a single shot or a series is saved. The time is passed in, in
/// milliseconds of any clock that never runs backwards. Not locked: its owner's lock guards it.
class SnapshotClock
{
public:
    struct Schedule {
        CanvasModes::SnapshotMode mode = CanvasModes::Single;
        /// Whole seconds between two pictures of a series; 0 takes every picture.
        std::uint64_t intervalSeconds = 0;
        /// A series ends once the clock reaches this; all bits set is never.
        std::uint64_t limitSeconds = UINT64_MAX;
    };

    /// Starts the clock again. A series takes its first picture when the interval is over.
    void arm(const Schedule &schedule, std::int64_t nowMs);
    void disarm();
    [[nodiscard]] bool isArmed() const { return m_armed; }
    [[nodiscard]] bool isSeriesArmed() const;

    /// Whether takePicture() would do anything at this moment.
    [[nodiscard]] bool isDue(std::int64_t nowMs) const;
    /// Whether the picture of this moment is saved; disarms what is thereby done.
    [[nodiscard]] bool takePicture(std::int64_t nowMs);

private:
    [[nodiscard]] std::uint64_t secondAt(std::int64_t nowMs) const;

    Schedule m_schedule;
    bool m_armed = false;
    std::int64_t m_startMs = 0;
    std::uint64_t m_lastShotSecond = 0;
};
