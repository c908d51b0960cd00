#pragma once

#include "sources/camera/BusCamera.h"
#include "sources/camera/CameraLink.h"
#include "sources/camera/CameraStatus.h"

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

/// When a camera is opened again and when its stream is asked for again, decided from what the bus
/// lists and how the camera in use stands. A value with the time passed in, in milliseconds of any
/// monotonic clock; no threads.
class KeeperRules
{
public:
    /// A camera that was just plugged in needs this long before it can be opened reliably.
    static constexpr std::int64_t SETTLE_MS = 2001;
    /// Between two attempts at something that has failed.
    static constexpr std::int64_t RETRY_MS = 2000;
    /// Without a picture for so long a camera counts as silent; after SILENT_RESTART_MS its stream
    /// is asked for again, each time.
    static constexpr std::int64_t SILENT_MS = 2000;
    static constexpr std::int64_t SILENT_RESTART_MS = 4000;
    /// A stream that was asked for so long ago and is not there yet never comes.
    static constexpr std::int64_t HANG_MS = 4000;
    /// After so many streams without a picture the camera itself is opened again.
    static constexpr int RESTARTS = 3;

    struct Decision {
        /// To be opened; it takes the place of the camera in use.
        std::optional<BusCamera> open;
        bool restartStream = false;
        CameraStatus::State state = CameraStatus::State::Waiting;
        /// When the next decision is due, if earlier than the usual one.
        std::optional<std::int64_t> dueMs;
    };

    [[nodiscard]] Decision decide(std::int64_t nowMs, const BusCameras &listed,
                                  const CameraLink &link);
    /// How the opening ended: libuvc's result.
    void opened(std::int64_t nowMs, int result);

    /// What a failed opening means.
    [[nodiscard]] static CameraStatus::State stateOf(int openResult);

private:
    using Place = std::pair<std::uint8_t, std::uint8_t>;

    void noteArrivals(std::int64_t nowMs, const BusCameras &listed);
    void notePresence(const BusCameras &listed, const CameraLink &link);
    [[nodiscard]] Decision withoutCamera(std::int64_t nowMs) const;
    [[nodiscard]] Decision withCamera(std::int64_t nowMs, const CameraLink &link);
    [[nodiscard]] Decision withPendingStream(std::int64_t nowMs, const CameraLink &link) const;
    [[nodiscard]] Decision withoutPictures(std::int64_t nowMs, const CameraLink &link,
                                           CameraStatus::State state, std::int64_t intervalMs);

    /// Since when the bus lists a camera at that place.
    std::map<Place, std::int64_t> m_arrivals;
    /// The camera that is in use or to be opened, and when it may be opened.
    std::optional<BusCamera> m_candidate;
    std::int64_t m_nextOpenMs = 0;
    int m_openResult = 0;
    std::int64_t m_nextRestartMs = 0;
    int m_restarts = 0;
};
