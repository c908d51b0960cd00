#pragma once

#include "tools/virtualcamera/UsbDescriptors.h"

#include <cstdint>
#include <vector>

/// One exchange with a register of the extension unit.
struct ExtensionTransfer {
    bool write = false;
    int selector = 0;
    std::uint64_t value = 0;

    bool operator==(const ExtensionTransfer &other) const
    {
        return write == other.write && selector == other.selector && value == other.value;
    }
};

/// When the last packet of a frame was handed to the program.
struct FrameDelivery {
    std::uint32_t frame = 0;      ///< its number on the sheet
    std::int64_t monotonicNs = 0; ///< CLOCK_MONOTONIC
};

/// What the emulated camera has done since it was made.
struct CameraStatistics {
    std::uint64_t framesSent = 0;    ///< put on the bus
    std::uint64_t framesOverrun = 0; ///< not sent because the program was too slow
    std::uint64_t bytesSent = 0;
    std::uint64_t ioctls = 0;
    std::uint64_t controlTransfers = 0;
    std::uint64_t classTransfers = 0; ///< those of them for the video function
    std::uint64_t stalledTransfers = 0;
    int openHandles = 0;
    int streamWidth = 0; ///< of the last commit, 0 before the first
    int streamHeight = 0;
    std::uint32_t streamInterval = 0; ///< between two frames, in units of 100 ns
    UsbDescriptors::StreamCoding streamCoding = UsbDescriptors::StreamCoding::MotionJpeg;
    bool plugged = false;
    bool streaming = false;                ///< committed and not yet stopped
    std::uint32_t lastFrame = 0;           ///< number of the newest frame on the bus
    std::vector<FrameDelivery> deliveries; ///< the last 256, oldest first
};
