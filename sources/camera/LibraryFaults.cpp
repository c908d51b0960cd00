#include "sources/camera/LibraryFaults.h"

#include "sources/camera/DescriptorFence.h"

#include <libusb.h>

#include <dlfcn.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace
{

thread_local bool settingsLeftAlone = false;
thread_local bool refusalsTold = false;
thread_local bool leftInSetting = false;
thread_local bool questionsBounded = false;
thread_local bool questionUnanswered = false;

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

constexpr std::uint8_t VIDEO_CONTROL = 1, VIDEO_STREAM = 2;

/// The library's own memory, which it gives out as constant.
libusb_interface_descriptor *settingsOf(const libusb_config_descriptor &configuration,
                                        int interface)
{
    return const_cast<libusb_interface_descriptor *>(configuration.interface[interface].altsetting);
}

bool isVideo(const libusb_interface_descriptor &setting, std::uint8_t subclass)
{
    return setting.bInterfaceClass == LIBUSB_CLASS_VIDEO && setting.bInterfaceSubClass == subclass;
}

/// Whether libuvc may read the descriptors now.
bool fenced(const libusb_config_descriptor &configuration)
{
    std::vector<bool> streams;
    for (int i = 0; i < configuration.bNumInterfaces; ++i) {
        const libusb_interface &interface = configuration.interface[i];
        // libuvc looks at the first setting of everything.
        if (interface.num_altsetting < 1)
            return false;
        streams.push_back(isVideo(interface.altsetting[0], VIDEO_STREAM) &&
                          interface.altsetting[0].bInterfaceNumber == i);
    }
    std::optional<bool> hasStream;
    for (int i = 0; i < configuration.bNumInterfaces; ++i) {
        libusb_interface_descriptor &setting = *settingsOf(configuration, i);
        auto *extra = const_cast<std::uint8_t *>(setting.extra);
        const auto length = static_cast<std::size_t>(extra ? setting.extra_length : 0);
        if (streams[static_cast<std::size_t>(i)]) {
            setting.extra_length = static_cast<int>(DescriptorFence::fenceStream(extra, length));
        } else if (isVideo(setting, VIDEO_CONTROL) && !hasStream) {
            // Of several control interfaces libuvc takes the first.
            const auto control = DescriptorFence::fenceControl(extra, length, streams);
            setting.extra_length = static_cast<int>(control.length);
            hasStream = control.hasStream;
        }
    }
    // A device that is no camera at all is refused by libuvc itself.
    return hasStream.value_or(true);
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

LibraryFaults::QuestionsBounded::QuestionsBounded()
{
    questionsBounded = true;
    questionUnanswered = false;
}

LibraryFaults::QuestionsBounded::~QuestionsBounded()
{
    questionsBounded = false;
}

bool LibraryFaults::QuestionsBounded::unanswered() const
{
    return questionUnanswered;
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
libusb_control_transfer(libusb_device_handle *handle, uint8_t type, uint8_t request, uint16_t value,
                        uint16_t index, unsigned char *data, uint16_t length, unsigned timeoutMs)
{
    using Transfer = int (*)(libusb_device_handle *, uint8_t, uint8_t, uint16_t, uint16_t,
                             unsigned char *, uint16_t, unsigned);
    static const auto transfer = original<Transfer>("libusb_control_transfer");
    if (!transfer)
        return LIBUSB_ERROR_NOT_SUPPORTED;
    const bool bounded = questionsBounded && timeoutMs == 0;
    if (bounded && questionUnanswered)
        return LIBUSB_ERROR_TIMEOUT;
    const unsigned limitMs = bounded ? LibraryFaults::QuestionsBounded::ANSWER_LIMIT_MS : timeoutMs;
    const int result = transfer(handle, type, request, value, index, data, length, limitMs);
    questionUnanswered = questionUnanswered || (bounded && result == LIBUSB_ERROR_TIMEOUT);
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

extern "C" __attribute__((visibility("default"))) int
libusb_get_config_descriptor(libusb_device *device, uint8_t index,
                             libusb_config_descriptor **configuration)
{
    using Getting = int (*)(libusb_device *, uint8_t, libusb_config_descriptor **);
    static const auto get = original<Getting>("libusb_get_config_descriptor");
    const int result =
        get ? get(device, index, configuration) : static_cast<int>(LIBUSB_ERROR_NOT_SUPPORTED);
    if (result != 0 || fenced(**configuration))
        return result;
    libusb_free_config_descriptor(*configuration);
    *configuration = nullptr;
    return LIBUSB_ERROR_NOT_SUPPORTED;
}
