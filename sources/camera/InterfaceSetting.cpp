#include "sources/camera/InterfaceSetting.h"

#include <libusb.h>

#include <dlfcn.h>

namespace
{

thread_local bool leftAlone = false;
thread_local bool leftMeanwhile = false;

using Setting = int (*)(libusb_device_handle *, int, int);

} // namespace

InterfaceSetting::LeftAlone::LeftAlone()
{
    leftAlone = true;
}

InterfaceSetting::LeftAlone::~LeftAlone()
{
    leftAlone = false;
}

bool InterfaceSetting::deviceLeftMeanwhile()
{
    return leftMeanwhile;
}

extern "C" __attribute__((visibility("default"))) int
libusb_set_interface_alt_setting(libusb_device_handle *handle, int interface, int setting)
{
    static const auto original =
        reinterpret_cast<Setting>(dlsym(RTLD_NEXT, "libusb_set_interface_alt_setting"));
    // A question that looks whether the device is there, and does so without the fault.
    if (leftAlone || !original ||
        libusb_kernel_driver_active(handle, interface) == LIBUSB_ERROR_NO_DEVICE)
        return LIBUSB_ERROR_NO_DEVICE;
    const int result = original(handle, interface, setting);
    leftMeanwhile = leftMeanwhile || result == LIBUSB_ERROR_NO_DEVICE;
    return result;
}
