#pragma once

#include "tools/virtualcamera/CameraFaults.h"
#include "tools/virtualcamera/CameraStatistics.h"
#include "tools/virtualcamera/UnitControls.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

struct VirtualCameraConfig {
    enum class Transport { Bulk, Isochronous };

    Transport transport = Transport::Bulk;
    /// Bytes of a bulk payload with its header; 32 KiB or more, or the program cannot keep up.
    std::uint32_t maximumPayload = 256 * 1024;
    QString serial = QStringLiteral("EDC0001");
    QString banner = QStringLiteral("Emulated camera"); ///< printed on the sheet
    int framesPerSecond = 30;
    std::uint16_t vendorId = UsbDescriptors::VENDOR_ID;
    std::uint16_t productId = UsbDescriptors::PRODUCT_ID;
    QString product = QStringLiteral("Emulated document camera");
    /// Pictures come at framesPerSecond, whichever interval is chosen. Motion-JPEG wants sizes
    /// whose width is a multiple of 128 and whose height one of 8; the others an even width.
    std::vector<UsbDescriptors::StreamFormat> formats{{}};
    int jpegQuality = 85;
    /// Whether it has the vendor's unit, unless a fault takes that away.
    bool extensionUnit = true;
    /// What its camera terminal and processing unit have.
    std::vector<UnitControl> controls;
    /// Bytes of its descriptors that are others: their places, counted from the device descriptor
    /// on, and values.
    std::vector<std::pair<std::size_t, std::uint8_t>> descriptorPatches;
};

/// A camera that exists in this process alone, unless told otherwise a document camera 04FC:6330:
/// programs find it, steer it and stream from it through the unmodified USB libraries.
///
/// The process, and any child that is to see the camera, runs with the device guard and
/// libumockdev-preload.so.0 preloaded. Several cameras share one bus; with them no real USB device
/// is visible. All operations are safe on any thread. Texts on the sheet need a QGuiApplication.
class VirtualCamera
{
public:
    explicit VirtualCamera(const VirtualCameraConfig &config = {});
    /// Unplugs. Programs should have closed the camera or be past using it.
    ~VirtualCamera();
    VirtualCamera(const VirtualCamera &) = delete;
    VirtualCamera &operator=(const VirtualCamera &) = delete;

    /// Powers the camera on and announces it; false if the system refuses. Does nothing and
    /// succeeds while it is plugged in.
    bool plug();
    void unplug();
    /// As unplug(), but good payloads still complete around it, as happens on a busy bus.
    void unplugDirty();
    [[nodiscard]] bool plugged() const;

    [[nodiscard]] CameraFaults &faults();
    [[nodiscard]] CameraStatistics statistics() const;

    /// What went through the extension unit since the last call, oldest first.
    [[nodiscard]] std::vector<ExtensionTransfer> takeExtensionTransfers();
    /// A parameter's value at this moment, without a transfer.
    [[nodiscard]] std::uint64_t parameter(std::uint64_t id) const;
    /// From now on parameter `id` reads as `value`, whatever the camera does.
    void overrideParameter(std::uint64_t id, std::uint64_t value);
    void clearOverrides();

    [[nodiscard]] UnitControls &unitControls();

    /// The folder of the mocked /sys and /dev.
    [[nodiscard]] QString root() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};
