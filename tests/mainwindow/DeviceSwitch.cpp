#include "tests/mainwindow/DeviceSwitch.h"

#include <QByteArray>

#include <xcb/xcbext.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <sys/uio.h>

namespace
{

// As in the X Input protocol, of which no header is needed for two requests.
xcb_extension_t inputExtension{"XInputExtension", 0};
constexpr std::uint8_t QUERY_DEVICE = 48;
constexpr std::uint8_t CHANGE_PROPERTY = 57;
constexpr std::uint8_t REPLACE = 0;

struct QueryDevice {
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint16_t length = 0;
    /// 0 stands for all.
    std::uint16_t device = 0;
    std::uint16_t padding = 0;
};

struct DeviceList {
    std::uint8_t type;
    std::uint8_t padding;
    std::uint16_t sequence;
    std::uint32_t length;
    std::uint16_t count;
    std::uint8_t rest[22];
};

struct DeviceInfo {
    std::uint16_t id;
    std::uint16_t use;
    std::uint16_t attachment;
    std::uint16_t classes;
    std::uint16_t nameLength;
    std::uint8_t enabled;
    std::uint8_t padding;
};

/// What follows it in a list, in units of 4 bytes with itself.
struct ClassInfo {
    std::uint16_t type;
    std::uint16_t length;
};

struct ChangeProperty {
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint16_t length = 0;
    std::uint16_t device = 0;
    std::uint8_t mode = REPLACE;
    std::uint8_t format = 8;
    std::uint32_t property = XCB_ATOM_NONE;
    std::uint32_t type = XCB_ATOM_INTEGER;
    std::uint32_t count = 1;
    std::uint8_t value = 0;
    std::uint8_t padding[3]{};
};

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

template <typename Request>
unsigned send(xcb_connection_t *connection, int flags, std::uint8_t minor, bool answers,
              Request request)
{
    xcb_protocol_request_t description{};
    description.count = 1;
    description.ext = &inputExtension;
    description.opcode = minor;
    description.isvoid = answers ? 0 : 1;
    // The library puts head and length of a request before what it is given.
    iovec parts[3]{};
    parts[2] = {&request, sizeof request};
    return xcb_send_request(connection, flags, parts + 2, &description);
}

std::uint16_t find(xcb_connection_t *connection, const QByteArray &name)
{
    const unsigned asked = send(connection, XCB_REQUEST_CHECKED, QUERY_DEVICE, true, QueryDevice());
    const std::unique_ptr<void, decltype(&std::free)> answer(
        xcb_wait_for_reply(connection, asked, nullptr), &std::free);
    if (!answer)
        qFatal("The display server lists no devices");
    const auto *list = static_cast<const DeviceList *>(answer.get());
    const char *at = reinterpret_cast<const char *>(list + 1);
    for (unsigned i = 0; i < list->count; ++i) {
        DeviceInfo info{};
        std::memcpy(&info, at, sizeof info);
        at += sizeof info;
        if (name == QByteArray(at, info.nameLength))
            return info.id;
        at += std::ptrdiff_t{(info.nameLength + 3) / 4} * 4;
        for (unsigned each = 0; each < info.classes; ++each) {
            ClassInfo described{};
            std::memcpy(&described, at, sizeof described);
            at += std::ptrdiff_t{described.length} * 4;
        }
    }
    qFatal("There is no device %s", name.constData());
}

void setEnabled(const char *device, bool enabled)
{
    const Connection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    const char *const property = "Device Enabled";
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection.get(),
                              xcb_intern_atom(connection.get(), 0,
                                              static_cast<std::uint16_t>(std::strlen(property)),
                                              property),
                              nullptr),
        &std::free);
    ChangeProperty change;
    change.device = find(connection.get(), device);
    change.property = atom->atom;
    change.value = enabled ? 1 : 0;
    const unsigned sent =
        send(connection.get(), XCB_REQUEST_CHECKED, CHANGE_PROPERTY, false, change);
    const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> error(
        xcb_request_check(connection.get(), {sent}), &std::free);
    if (error)
        qFatal("%s cannot be switched: error %d", device, error->error_code);
}

} // namespace

void DeviceSwitch::unplug(const char *device)
{
    setEnabled(device, false);
}

void DeviceSwitch::plugIn(const char *device)
{
    setEnabled(device, true);
}
