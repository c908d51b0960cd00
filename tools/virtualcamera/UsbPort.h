#pragma once

#include "tools/virtualcamera/UsbFs.h"

#include <umockdev.h>

#include <memory>
#include <string>

/// The port that the camera is plugged into: the mocked /sys and /dev, and the announcements of
/// coming and going. One per process at a time; not thread-safe.
class UsbPort
{
public:
    explicit UsbPort(std::shared_ptr<UsbFs> usbFs);
    ~UsbPort();
    UsbPort(const UsbPort &) = delete;
    UsbPort &operator=(const UsbPort &) = delete;

    struct Names {
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

    struct Unref {
        void operator()(gpointer object) const { g_object_unref(object); }
    };

    std::shared_ptr<UsbFs> m_usbFs;
    std::unique_ptr<UMockdevTestbed, Unref> m_testbed;
    std::unique_ptr<UMockdevIoctlBase, Unref> m_ioctls;
    std::string m_node;       ///< as the program sees it
    std::string m_systemPath; ///< empty while nothing is plugged in
    int m_deviceNumber = 1;
};
