#pragma once

#include "sources/camera/CameraIdentity.h"

#include <QSize>

#include <cstdint>

/// The state of the program's camera at one moment.
struct CameraLink {
    /// On the bus, and not opened yet.
    bool seen = false;
    /// It was opened, or that was tried.
    bool running = false;
    /// libuvc's result of opening it.
    int openResult = 0;
    /// The camera that is wanted, and the one in use.
    CameraChoice choice;
    CameraIdentity identity;
    std::uint8_t busNumber = 0;
    std::uint8_t address = 0;
    /// A transfer or the bus said that there is no such device.
    bool gone = false;

    /// A stream is asked for, of that size; `streamResult` is libuvc's, once it is not pending.
    bool streamWanted = false;
    bool streamPending = false;
    int streamResult = 0;
    QSize size;
    /// The size that was asked for, of which the camera has the nearest.
    QSize wantedSize;
    /// Milliseconds since the stream was asked for, and since its last frame or, before the first,
    /// since it was asked for.
    std::int64_t sinceRequestMs = 0;
    std::int64_t sinceFrameMs = 0;
    /// Of this stream: pictures handed on; and those that were not, because the program was busy
    /// with an earlier one or could not decode them.
    std::uint64_t frames = 0;
    std::uint64_t lost = 0;
};
