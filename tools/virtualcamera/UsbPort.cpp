#include "tools/virtualcamera/UsbPort.h"

#include "tools/virtualcamera/UsbDescriptors.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <utility>

namespace
{

constexpr char PORT_NAME[] = "1-1";

std::string formatted(const char *format, unsigned value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string owned(gchar *text)
{
    std::string copy = text ? text : "";
    g_free(text);
    return copy;
}

} // namespace

UsbPort::UsbPort(std::shared_ptr<UsbFs> usbFs)
    : m_usbFs(std::move(usbFs))
    , m_testbed(umockdev_testbed_new())
    , m_ioctls(umockdev_ioctl_base_new())
{
    g_signal_connect(
        m_ioctls.get(), "handle-ioctl",
        G_CALLBACK(+[](UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer fs) -> gboolean {
            static_cast<UsbFs *>(fs)->handleIoctl(client);
            return TRUE;
        }),
        m_usbFs.get());
}

UsbPort::~UsbPort()
{
    pullOut(false);
}

bool UsbPort::plugIn(const Names &names)
{
    if (!m_systemPath.empty())
        return true;
    ++m_deviceNumber;
    m_node = formatted("/dev/bus/usb/001/%03u", static_cast<unsigned>(m_deviceNumber));
    const std::filesystem::path path = root() + m_node;
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    if (!m_usbFs->plugIn(path.string(), m_deviceNumber))
        return false;
    if (!umockdev_testbed_attach_ioctl(m_testbed.get(), m_node.c_str(), m_ioctls.get(), nullptr)) {
        m_usbFs->pullOut(false);
        return false;
    }
    writeSystemFiles(names);
    return true;
}

void UsbPort::pullOut(bool dirty)
{
    if (m_systemPath.empty())
        return;
    m_usbFs->pullOut(dirty);
    // Not every release of umockdev announces a removal by itself.
    umockdev_testbed_uevent(m_testbed.get(), m_systemPath.c_str(), "remove");
    umockdev_testbed_remove_device(m_testbed.get(), m_systemPath.c_str());
    umockdev_testbed_detach_ioctl(m_testbed.get(), m_node.c_str(), nullptr);
    m_systemPath.clear();
}

std::string UsbPort::root() const
{
    return owned(umockdev_testbed_get_root_dir(m_testbed.get()));
}

/// Adds the device. The binary descriptors must be there before it is announced, so they are
/// written first, into the folder where it will be.
void UsbPort::writeSystemFiles(const Names &names)
{
    using namespace UsbDescriptors;
    const std::string folder =
        owned(umockdev_testbed_get_sys_dir(m_testbed.get())) + "/devices/" + PORT_NAME;
    std::filesystem::create_directories(folder);
    const std::vector<std::uint8_t> bytes = m_usbFs->descriptors();
    std::ofstream(folder + "/descriptors", std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));

    const auto number = static_cast<unsigned>(m_deviceNumber);
    const std::string deviceNumber = formatted("%u\n", number),
                      dev = formatted("189:%u", number - 1),
                      paddedNumber = formatted("%03u", number),
                      vendor = formatted("%04x\n", VENDOR_ID),
                      product = formatted("%04x\n", PRODUCT_ID), serial = names.serial + "\n",
                      manufacturer = names.manufacturer + "\n", productName = names.product + "\n",
                      id = formatted("%x/", VENDOR_ID) + formatted("%x/100", PRODUCT_ID);
    const char *attributes[] = {"busnum",
                                "1\n",
                                "devnum",
                                deviceNumber.c_str(),
                                "speed",
                                "480\n",
                                "bConfigurationValue",
                                "1\n",
                                "bNumConfigurations",
                                "1\n",
                                "bDeviceClass",
                                "ef\n",
                                "idVendor",
                                vendor.c_str(),
                                "idProduct",
                                product.c_str(),
                                "bcdDevice",
                                "0100\n",
                                "serial",
                                serial.c_str(),
                                "manufacturer",
                                manufacturer.c_str(),
                                "product",
                                productName.c_str(),
                                "version",
                                " 2.00\n",
                                "maxchild",
                                "0\n",
                                "dev",
                                dev.c_str(),
                                nullptr};
    const char *properties[] = {"DEVTYPE", "usb_device", "DEVNAME", m_node.c_str(),
                                "BUSNUM",  "001",        "DEVNUM",  paddedNumber.c_str(),
                                "PRODUCT", id.c_str(),   "TYPE",    "239/2/1",
                                "MAJOR",   "189",        nullptr};
    m_systemPath = owned(umockdev_testbed_add_devicev(m_testbed.get(), "usb", PORT_NAME, nullptr,
                                                      const_cast<gchar **>(attributes),
                                                      const_cast<gchar **>(properties)));
}
