#include "tools/virtualcamera/VirtualCamera.h"

#include "tools/virtualcamera/ExtensionUnit.h"
#include "tools/virtualcamera/UsbFs.h"
#include "tools/virtualcamera/UsbPort.h"
#include "tools/virtualcamera/UvcFunction.h"
#include "tools/virtualcamera/UvcStreamer.h"

#include <mutex>

namespace
{

constexpr char MANUFACTURER[] = "Document Camera Project";

bool isochronous(const VirtualCameraConfig &config)
{
    return config.transport == VirtualCameraConfig::Transport::Isochronous;
}

/// What answers a program: all that may still be asked when the camera has ceased to be, as a
/// program may keep it open and only notice when it asks.
struct AnsweringDevice {
    AnsweringDevice(const VirtualCameraConfig &config, const UsbPort::Names &names)
        : unitControls(config.controls)
        , function({isochronous(config), config.maximumPayload, names.manufacturer, names.product,
                    names.serial, config.vendorId, config.productId, config.formats,
                    config.extensionUnit, config.descriptorPatches},
                   extensionUnit, unitControls, faults)
    {
    }

    CameraFaults faults;
    ExtensionUnit extensionUnit;
    UnitControls unitControls;
    UvcFunction function;
};

std::shared_ptr<UsbFs> usbFsOf(const std::shared_ptr<AnsweringDevice> &device)
{
    return {new UsbFs(device->function, device->faults), [device](UsbFs *usbFs) { delete usbFs; }};
}

} // namespace

struct VirtualCamera::Parts {
    explicit Parts(const VirtualCameraConfig &config)
        : names{config.vendorId, config.productId, MANUFACTURER, config.product.toStdString(),
                config.serial.toStdString()}
        , device(std::make_shared<AnsweringDevice>(config, names))
        , usbFs(usbFsOf(device))
        , streamer({isochronous(config), config.maximumPayload, config.framesPerSecond,
                    config.jpegQuality, config.banner},
                   *usbFs, device->extensionUnit, device->faults)
        , port(usbFs)
    {
    }

    UsbPort::Names names;
    std::shared_ptr<AnsweringDevice> device;
    std::shared_ptr<UsbFs> usbFs;
    UvcStreamer streamer;
    mutable std::mutex portMutex; ///< guards port
    UsbPort port;
};

VirtualCamera::VirtualCamera(const VirtualCameraConfig &config)
    : m_parts(std::make_unique<Parts>(config))
{
}

VirtualCamera::~VirtualCamera() = default;

bool VirtualCamera::plug()
{
    const std::lock_guard lock(m_parts->portMutex);
    return m_parts->port.plugIn(m_parts->names);
}

void VirtualCamera::unplug()
{
    const std::lock_guard lock(m_parts->portMutex);
    m_parts->port.pullOut(false);
}

void VirtualCamera::unplugDirty()
{
    const std::lock_guard lock(m_parts->portMutex);
    m_parts->port.pullOut(true);
}

bool VirtualCamera::plugged() const
{
    return m_parts->usbFs->plugged();
}

CameraFaults &VirtualCamera::faults()
{
    return m_parts->device->faults;
}

CameraStatistics VirtualCamera::statistics() const
{
    CameraStatistics statistics;
    m_parts->usbFs->report(statistics);
    m_parts->streamer.report(statistics);
    return statistics;
}

std::vector<ExtensionTransfer> VirtualCamera::takeExtensionTransfers()
{
    return m_parts->device->extensionUnit.takeTransfers();
}

std::uint64_t VirtualCamera::parameter(std::uint64_t id) const
{
    return m_parts->device->extensionUnit.parameter(id);
}

void VirtualCamera::overrideParameter(std::uint64_t id, std::uint64_t value)
{
    m_parts->device->extensionUnit.overrideParameter(id, value);
}

void VirtualCamera::clearOverrides()
{
    m_parts->device->extensionUnit.clearOverrides();
}

UnitControls &VirtualCamera::unitControls()
{
    return m_parts->device->unitControls;
}

QString VirtualCamera::root() const
{
    const std::lock_guard lock(m_parts->portMutex);
    return QString::fromStdString(m_parts->port.root());
}
