#pragma once

#include "sources/camera/BusCamera.h"

struct libusb_context;

/// The cameras on the bus, looked at through a context of its own, so that a camera which is open
/// elsewhere is not touched. No device is opened and nothing crosses the bus: the system has read
/// the descriptors and the names when the camera was plugged in.
///
/// One thread at a time; a look takes as long as the system takes to read a few small files.
class CameraBus
{
public:
    CameraBus() = default;
    ~CameraBus();
    CameraBus(const CameraBus &) = delete;
    CameraBus &operator=(const CameraBus &) = delete;

    /// Every device with a video interface, in the order of the bus; none when the bus cannot be
    /// looked at.
    [[nodiscard]] BusCameras cameras();

private:
    libusb_context *m_context = nullptr;
};
