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

} // namespace

struct VirtualCamera::Parts {
    explicit Parts(const VirtualCameraConfig &config)
        : names{config.vendorId, config.productId, MANUFACTURER, config.product.toStdString(),
                config.serial.toStdString()}
        , unitControls(config.controls)
        , function({isochronous(config), config.maximumPayload, names.manufacturer, names.product,
                    names.serial, config.vendorId, config.productId, config.formats,
                    config.extensionUnit, config.descriptorPatches},
                   extensionUnit, unitControls, faults)
        , usbFs(std::make_shared<UsbFs>(function, faults))
        , streamer({isochronous(config), config.maximumPayload, config.framesPerSecond,
                    config.jpegQuality, config.banner},
                   *usbFs, extensionUnit, faults)
        , port(usbFs)
    {
    }

    CameraFaults faults;
    ExtensionUnit extensionUnit;
    UsbPort::Names names;
    UnitControls unitControls;
    UvcFunction function;
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
    return m_parts->faults;
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
    return m_parts->extensionUnit.takeTransfers();
}

std::uint64_t VirtualCamera::parameter(std::uint64_t id) const
{
    return m_parts->extensionUnit.parameter(id);
}

void VirtualCamera::overrideParameter(std::uint64_t id, std::uint64_t value)
{
    m_parts->extensionUnit.overrideParameter(id, value);
}

void VirtualCamera::clearOverrides()
{
    m_parts->extensionUnit.clearOverrides();
}

UnitControls &VirtualCamera::unitControls()
{
    return m_parts->unitControls;
}

QString VirtualCamera::root() const
{
    const std::lock_guard lock(m_parts->portMutex);
    return QString::fromStdString(m_parts->port.root());
}
