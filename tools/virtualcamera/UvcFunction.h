#pragma once

#include "tools/virtualcamera/CameraFaults.h"
#include "tools/virtualcamera/CameraStatistics.h"
#include "tools/virtualcamera/ExtensionUnit.h"
#include "tools/virtualcamera/UnitControls.h"
#include "tools/virtualcamera/UsbDescriptors.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The eight bytes that open a control transfer.
struct SetupPacket {
    std::uint8_t requestType;
    std::uint8_t request;
    std::uint16_t value;
    std::uint16_t index;
    std::uint16_t length;

    [[nodiscard]] static SetupPacket parse(const std::uint8_t *bytes);
    /// Not one of those that every device answers.
    [[nodiscard]] bool isClassRequest() const { return (requestType & 0x60) != 0; }
};

/// Answers the control transfers of the camera: descriptors, probe and commit of the stream, units.
/// Not thread-safe; its owner serialises the calls.
class UvcFunction
{
public:
    struct Settings {
        bool isochronous = false;
        std::uint32_t maximumPayload = 0; ///< bytes of a bulk payload with its header
        std::string manufacturer;
        std::string product;
        std::string serial;
        std::uint16_t vendorId = UsbDescriptors::VENDOR_ID;
        std::uint16_t productId = UsbDescriptors::PRODUCT_ID;
        std::vector<UsbDescriptors::StreamFormat> formats{{}};
        bool extensionUnit = true;
        std::vector<std::pair<std::size_t, std::uint8_t>> descriptorPatches;
    };

    UvcFunction(Settings settings, ExtensionUnit &extensionUnit, UnitControls &unitControls,
                CameraFaults &faults);

    /// Takes the descriptors of a camera with or without the extension unit and resets the stream.
    void powerOn(bool withExtensionUnit, int missingSize);

    /// Returns the number of bytes in `data`, or a negative errno. `data` holds setup.length bytes
    /// at least.
    [[nodiscard]] int control(const SetupPacket &setup, std::uint8_t *data);

    /// The stream committed since the last call, if any.
    struct Commit {
        UsbDescriptors::StreamCoding coding = UsbDescriptors::StreamCoding::MotionJpeg;
        UsbDescriptors::StreamSize size{0, 0};
        std::uint32_t interval = UsbDescriptors::FRAME_INTERVAL; ///< in units of 100 ns
    };
    [[nodiscard]] std::optional<Commit> takeCommit();
    [[nodiscard]] const std::vector<std::uint8_t> &descriptors() const { return m_descriptors; }
    [[nodiscard]] const Settings &settings() const { return m_settings; }
    /// Adds the counts of control transfers.
    void report(CameraStatistics &statistics) const;

private:
    using StreamControl = std::array<std::uint8_t, 34>;
    struct Agreed {
        std::uint8_t formatIndex = 0;
        std::uint8_t frameIndex = 0;
        Commit stream;
    };

    [[nodiscard]] int standard(const SetupPacket &setup, std::uint8_t *data) const;
    [[nodiscard]] int classRequest(const SetupPacket &setup, std::uint8_t *data);
    [[nodiscard]] int descriptor(const SetupPacket &setup, std::uint8_t *data) const;
    [[nodiscard]] int streaming(const SetupPacket &setup, std::uint8_t *data);
    [[nodiscard]] int extension(const SetupPacket &setup, std::uint8_t *data);
    /// What the camera agrees to when it is asked for those indices and that interval: the first
    /// of each kind for one that it does not list.
    [[nodiscard]] Agreed agreed(unsigned formatIndex, unsigned frameIndex,
                                std::uint32_t interval) const;
    [[nodiscard]] StreamControl streamControl(const Agreed &agreed) const;

    Settings m_settings;
    ExtensionUnit &m_extensionUnit;
    UnitControls &m_unitControls;
    CameraFaults &m_faults;
    std::vector<std::uint8_t> m_descriptors;
    bool m_hasExtensionUnit = true;
    StreamControl m_probe{};
    StreamControl m_commit{};
    std::optional<Commit> m_committed;
    std::uint64_t m_controlTransfers = 0;
    std::uint64_t m_classTransfers = 0;
    std::uint64_t m_stalledTransfers = 0;
};
