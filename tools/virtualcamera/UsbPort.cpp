#include "tools/virtualcamera/UsbPort.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <utility>

namespace
{

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

/// The mocked file system of the process, which exists as long as a port does.
class UsbBus
{
public:
    static std::shared_ptr<UsbBus> shared()
    {
        static std::mutex mutex;
        static std::weak_ptr<UsbBus> current;
        const std::lock_guard lock(mutex);
        std::shared_ptr<UsbBus> bus = current.lock();
        if (!bus)
            current = bus = std::make_shared<UsbBus>();
        return bus;
    }

    [[nodiscard]] UMockdevTestbed *testbed() const { return m_testbed.get(); }

    [[nodiscard]] int takePort()
    {
        const std::lock_guard lock(m_mutex);
        int port = 1;
        while (!m_ports.insert(port).second)
            ++port;
        return port;
    }
    void returnPort(int port)
    {
        const std::lock_guard lock(m_mutex);
        m_ports.erase(port);
    }
    [[nodiscard]] int nextDeviceNumber()
    {
        const std::lock_guard lock(m_mutex);
        return ++m_deviceNumber;
    }

private:
    const std::unique_ptr<UMockdevTestbed, GObjectUnref> m_testbed{umockdev_testbed_new()};
    std::mutex m_mutex; ///< guards all below
    std::set<int> m_ports;
    int m_deviceNumber = 1;
};

UsbPort::UsbPort(std::shared_ptr<UsbFs> usbFs)
    : m_usbFs(std::move(usbFs))
    , m_bus(UsbBus::shared())
    , m_number(m_bus->takePort())
    , m_ioctls(umockdev_ioctl_base_new())
{
    // Lives as long as programs have the node open. What umockdev's thread is given has a lock of
    // its own, as no other shows how it is handed over.
    m_usbFs->keep();
    g_object_set_data_full(
        G_OBJECT(m_ioctls.get()), "file system", m_usbFs.get(),
        +[](gpointer fs) { static_cast<UsbFs *>(fs)->letGo(); });
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
    m_bus->returnPort(m_number);
}

bool UsbPort::plugIn(const Names &names)
{
    if (!m_systemPath.empty())
        return true;
    m_deviceNumber = m_bus->nextDeviceNumber();
    m_node = formatted("/dev/bus/usb/001/%03u", static_cast<unsigned>(m_deviceNumber));
    const std::filesystem::path path = root() + m_node;
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    if (!m_usbFs->plugIn(path.string(), m_deviceNumber))
        return false;
    if (!umockdev_testbed_attach_ioctl(m_bus->testbed(), m_node.c_str(), m_ioctls.get(), nullptr)) {
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
    umockdev_testbed_uevent(m_bus->testbed(), m_systemPath.c_str(), "remove");
    umockdev_testbed_remove_device(m_bus->testbed(), m_systemPath.c_str());
    umockdev_testbed_detach_ioctl(m_bus->testbed(), m_node.c_str(), nullptr);
    m_systemPath.clear();
}

std::string UsbPort::root() const
{
    return owned(umockdev_testbed_get_root_dir(m_bus->testbed()));
}

/// Adds the device. The binary descriptors must be there before it is announced, so they are
/// written first, into the folder where it will be.
void UsbPort::writeSystemFiles(const Names &names)
{
    const std::string port = "1-" + std::to_string(m_number);
    const std::string folder =
        owned(umockdev_testbed_get_sys_dir(m_bus->testbed())) + "/devices/" + port;
    std::filesystem::create_directories(folder);
    const std::vector<std::uint8_t> bytes = m_usbFs->descriptors();
    std::ofstream(folder + "/descriptors", std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));

    const auto number = static_cast<unsigned>(m_deviceNumber);
    const std::string deviceNumber = formatted("%u\n", number),
                      dev = formatted("189:%u", number - 1),
                      paddedNumber = formatted("%03u", number),
                      vendor = formatted("%04x\n", names.vendorId),
                      product = formatted("%04x\n", names.productId), serial = names.serial + "\n",
                      manufacturer = names.manufacturer + "\n", productName = names.product + "\n",
                      id = formatted("%x/", names.vendorId) + formatted("%x/100", names.productId);
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
    m_systemPath = owned(umockdev_testbed_add_devicev(m_bus->testbed(), "usb", port.c_str(),
                                                      nullptr, const_cast<gchar **>(attributes),
                                                      const_cast<gchar **>(properties)));
}
