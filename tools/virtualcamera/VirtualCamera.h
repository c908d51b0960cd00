#pragma once

#include "tools/virtualcamera/CameraFaults.h"
#include "tools/virtualcamera/CameraStatistics.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

struct VirtualCameraConfig {
    enum class Transport { Bulk, Isochronous };

    Transport transport = Transport::Bulk;
    /// Bytes of a bulk payload with its header; 32 KiB or more, or the program cannot keep up.
    std::uint32_t maximumPayload = 256 * 1024;
    QString serial = QStringLiteral("EDC0001");
    QString banner = QStringLiteral("Emulated camera"); ///< printed on the sheet
    int framesPerSecond = 30;
    /// In units of 100 ns, as listed for every size, the first being the default. Pictures come at
    /// framesPerSecond whichever is chosen.
    std::vector<std::uint32_t> intervals{333333};
    int jpegQuality = 85;
};

/// A document camera 04FC:6330 that exists in this process alone: programs find it, steer it and
/// stream Motion-JPEG from it through the unmodified USB libraries.
///
/// The process, and any child that is to see the camera, runs with the device guard and
/// libumockdev-preload.so.0 preloaded. One camera per process at a time; with it no real USB device
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

    /// The folder of the mocked /sys and /dev.
    [[nodiscard]] QString root() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};
