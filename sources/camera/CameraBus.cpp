#include "sources/camera/CameraBus.h"

#include <libusb.h>

#include <QFile>
#include <QStringList>

#include <array>

namespace
{

/// As deep as hubs can be stacked.
constexpr int MAXIMUM_PORTS = 7;
/// A name in a device's own memory has 126 characters at most; a longer file is no name.
constexpr qint64 LONGEST_TEXT = 4096;

bool hasVideo(libusb_device *device)
{
    libusb_config_descriptor *configuration = nullptr;
    if (libusb_get_active_config_descriptor(device, &configuration) != 0)
        return false;
    bool found = false;
    for (int i = 0; i < configuration->bNumInterfaces; ++i) {
        const libusb_interface &interface = configuration->interface[i];
        found = found || (interface.num_altsetting > 0 &&
                          interface.altsetting[0].bInterfaceClass == LIBUSB_CLASS_VIDEO);
    }
    libusb_free_config_descriptor(configuration);
    return found;
}

/// The folder in which the system describes the device; empty for one without a port.
QString systemFolder(libusb_device *device)
{
    std::array<std::uint8_t, MAXIMUM_PORTS> ports{};
    const int count = libusb_get_port_numbers(device, ports.data(), MAXIMUM_PORTS);
    if (count <= 0)
        return QString();
    QStringList path;
    for (int i = 0; i < count; ++i)
        path.append(QString::number(ports.at(static_cast<std::size_t>(i))));
    return QStringLiteral("/sys/bus/usb/devices/%1-%2/")
        .arg(libusb_get_bus_number(device))
        .arg(path.join('.'));
}

QString text(const QString &folder, const char *name)
{
    QFile file(folder + QLatin1String(name));
    if (folder.isEmpty() || !file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.read(LONGEST_TEXT)).trimmed();
}

} // namespace

CameraBus::~CameraBus()
{
    if (m_context)
        libusb_exit(m_context);
}

BusCameras CameraBus::cameras()
{
    BusCameras cameras;
    if (!m_context && libusb_init(&m_context) < 0)
        m_context = nullptr;
    libusb_device **list = nullptr;
    const auto count = m_context ? libusb_get_device_list(m_context, &list) : 0;
    for (long i = 0; i < count; ++i) {
        libusb_device *device = list[i];
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(device, &descriptor) != 0 || !hasVideo(device))
            continue;
        const QString folder = systemFolder(device);
        cameras.push_back({{descriptor.idVendor, descriptor.idProduct, text(folder, "serial")},
                           libusb_get_bus_number(device),
                           libusb_get_device_address(device),
                           text(folder, "product")});
    }
    if (list)
        libusb_free_device_list(list, 1);
    return cameras;
}
