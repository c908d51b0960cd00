#pragma once

/// The library's libusb_set_interface_alt_setting() unlocks a mutex that it has not locked when the
/// device is gone, and closing the device then aborts the process. The definition in
/// InterfaceSetting.cpp takes its place for the whole program: for a device that is gone it answers
/// LIBUSB_ERROR_NO_DEVICE by itself.
namespace InterfaceSetting
{

/// While it lives, settings that this thread asks for are left as they are: for closing a camera
/// whose stream has ended, which has nothing to set any more and may leave meanwhile.
class LeftAlone
{
public:
    LeftAlone();
    ~LeftAlone();
    LeftAlone(const LeftAlone &) = delete;
    LeftAlone &operator=(const LeftAlone &) = delete;
};

/// Whether on this thread a device has left in the middle of such a call. The thread's devices must
/// not be closed then.
[[nodiscard]] bool deviceLeftMeanwhile();

} // namespace InterfaceSetting
