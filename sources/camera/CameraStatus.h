#pragma once

#include <QSize>

#include <cstdint>

/// What the user is told about the camera.
struct CameraStatus {
    enum class State {
        Waiting,      ///< none has been plugged in since the program started
        Seen,         ///< on the bus, and about to be opened
        Showing,      ///< pictures come
        Unplugged,    ///< it was there
        Busy,         ///< another program has it
        NoPermission, ///< the user may not open it
        NotOpened,    ///< it cannot be opened for another reason
        NoSuchSize,   ///< it does not agree to the size that is wanted
        Silent,       ///< no picture for two seconds
    };

    State state = State::Waiting;
    /// In pixels: the size that is wanted, or the size that is shown while the state is Showing.
    QSize size;
    QSize wantedSize;
    double framesPerSecond = 0.0;
    /// Counted for the stream that runs.
    std::uint64_t framesLost = 0;
    /// The numbers of the camera in use, or of the one that is waited for.
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    /// Whether the user has chosen that camera.
    bool chosen = false;

    /// Whether the user is to be told that something is wrong.
    [[nodiscard]] bool wrong() const { return state != State::Showing && state != State::Seen; }

    bool operator==(const CameraStatus &other) const
    {
        return state == other.state && size == other.size && wantedSize == other.wantedSize &&
               chosen == other.chosen && framesPerSecond == other.framesPerSecond &&
               framesLost == other.framesLost && vendorId == other.vendorId &&
               productId == other.productId;
    }
    bool operator!=(const CameraStatus &other) const { return !(*this == other); }
};
