#pragma once

#include "tools/virtualcamera/UsbFs.h"

#include <umockdev.h>

#include <cstdint>
#include <memory>
#include <string>

class UsbBus;

/// The port that a camera is plugged into: its part of the mocked /sys and /dev, and the
/// announcements of coming and going. All ports of a process are on one bus. Not thread-safe.
class UsbPort
{
public:
    explicit UsbPort(std::shared_ptr<UsbFs> usbFs);
    ~UsbPort();
    UsbPort(const UsbPort &) = delete;
    UsbPort &operator=(const UsbPort &) = delete;

    struct Names {
        std::uint16_t vendorId = 0;
        std::uint16_t productId = 0;
        std::string manufacturer;
        std::string product;
        std::string serial;
    };

    /// Each plugging gives the camera a new device number, as the kernel does.
    [[nodiscard]] bool plugIn(const Names &names);
    void pullOut(bool dirty);

    /// The folder of the mocked file system.
    [[nodiscard]] std::string root() const;

private:
    void writeSystemFiles(const Names &names);

    std::shared_ptr<UsbFs> m_usbFs;
    std::shared_ptr<UsbBus> m_bus;
    const int m_number; ///< on the bus, from 1 on
    std::unique_ptr<UMockdevIoctlBase, GObjectUnref> m_ioctls;
    std::string m_node;       ///< as the program sees it
    std::string m_systemPath; ///< empty while nothing is plugged in
    int m_deviceNumber = 0;
};
