#include "sources/camera/LibraryFaults.h"

#include <libusb.h>

#include <dlfcn.h>

namespace
{

thread_local bool settingsLeftAlone = false;
thread_local bool refusalsTold = false;
thread_local bool leftInSetting = false;

/// The library's own function of that name.
template <class Function>
Function original(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool isVideo(const libusb_transfer *transfer)
{
    return transfer->type == LIBUSB_TRANSFER_TYPE_BULK ||
           transfer->type == LIBUSB_TRANSFER_TYPE_ISOCHRONOUS;
}

} // namespace

LibraryFaults::SettingsLeftAlone::SettingsLeftAlone()
{
    settingsLeftAlone = true;
}

LibraryFaults::SettingsLeftAlone::~SettingsLeftAlone()
{
    settingsLeftAlone = false;
}

LibraryFaults::RefusalsTold::RefusalsTold()
{
    refusalsTold = true;
}

LibraryFaults::RefusalsTold::~RefusalsTold()
{
    refusalsTold = false;
}

bool LibraryFaults::deviceLeftInSetting()
{
    return leftInSetting;
}

extern "C" __attribute__((visibility("default"))) int
libusb_set_interface_alt_setting(libusb_device_handle *handle, int interface, int setting)
{
    using Setting = int (*)(libusb_device_handle *, int, int);
    static const auto set = original<Setting>("libusb_set_interface_alt_setting");
    // This call also finds out whether the device is there, and does not have the fault.
    if (settingsLeftAlone || !set ||
        libusb_kernel_driver_active(handle, interface) == LIBUSB_ERROR_NO_DEVICE)
        return LIBUSB_ERROR_NO_DEVICE;
    const int result = set(handle, interface, setting);
    leftInSetting = leftInSetting || result == LIBUSB_ERROR_NO_DEVICE;
    return result;
}

extern "C" __attribute__((visibility("default"))) int
libusb_submit_transfer(libusb_transfer *transfer)
{
    using Submission = int (*)(libusb_transfer *);
    static const auto submit = original<Submission>("libusb_submit_transfer");
    const int result = submit ? submit(transfer) : LIBUSB_ERROR_NOT_SUPPORTED;
    if (result == 0 || refusalsTold || !isVideo(transfer))
        return result;
    transfer->status = LIBUSB_TRANSFER_NO_DEVICE;
    transfer->actual_length = 0;
    transfer->callback(transfer); // may free it
    return result;
}
