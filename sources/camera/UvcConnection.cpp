#include "sources/camera/UvcConnection.h"

#include "diagnostics/TerminalLines.h"
#include "sources/camera/CameraProfile.h"
#include "sources/camera/LibraryFaults.h"
#include "sources/camera/OpenFailure.h"
#include "sources/camera/StreamNegotiation.h"

#include <libusb.h>
#include <libuvc/libuvc.h>

#include <QtGlobal>

#include <utility>

namespace
{

/// The library divides by what the camera says a transfer holds, and allocates a hundred buffers of
/// it; its own frame buffer bounds what can make sense.
constexpr std::uint32_t LARGEST_TRANSFER = 16u << 20;

bool canBeTransferred(const uvc_stream_ctrl_t &block)
{
    return block.dwMaxPayloadTransferSize > 0 && block.dwMaxPayloadTransferSize <= LARGEST_TRANSFER;
}

/// As they were parsed when the camera was opened; nothing crosses the bus.
StandardUnits unitsOf(uvc_device_handle *handle)
{
    StandardUnits units;
    if (const uvc_input_terminal_t *terminal = uvc_get_input_terminals(handle)) {
        units.cameraTerminal = terminal->bTerminalID;
        units.cameraControls = terminal->bmControls;
    }
    if (const uvc_processing_unit_t *unit = uvc_get_processing_units(handle)) {
        units.processingUnit = unit->bUnitID;
        units.processingControls = unit->bmControls;
    }
    return units;
}

} // namespace

void UvcConnection::Unreference::operator()(uvc_device *device) const
{
    uvc_unref_device(device);
}

UvcConnection::~UvcConnection() = default;

int UvcConnection::initialise()
{
    return uvc_init(&m_context, nullptr);
}

int UvcConnection::find(const CameraChoice &choice)
{
    m_device.reset();
    // The library's own search opens every camera to read its serial number.
    for (const BusCamera &camera : m_bus.cameras()) {
        if (!suits(camera, choice))
            continue;
        m_found = camera;
        return find(camera.busNumber, camera.address);
    }
    return UVC_ERROR_NO_DEVICE;
}

int UvcConnection::find(std::uint8_t busNumber, std::uint8_t address)
{
    m_device.reset();
    uvc_device_t **list = nullptr;
    if (!m_context || uvc_get_device_list(m_context, &list) < 0)
        return UVC_ERROR_NO_DEVICE;
    int found = UVC_ERROR_NO_DEVICE;
    for (uvc_device_t **device = list; *device; ++device) {
        if (uvc_get_bus_number(*device) != busNumber || uvc_get_device_address(*device) != address)
            continue;
        uvc_ref_device(*device);
        keep(*device);
        found = UVC_SUCCESS;
    }
    uvc_free_device_list(list, 1);
    return found;
}

int UvcConnection::open()
{
    if (!m_device)
        return UVC_ERROR_NO_DEVICE;
    uvc_device_handle_t *handle = nullptr;
    const uvc_error_t error = uvc_open(m_device.get(), &handle);
    m_handle = error < 0 ? nullptr : handle;
    if (m_handle) {
        m_offers = takeOffers(m_handle);
        m_units = unitsOf(m_handle);
    }
    return error;
}

void UvcConnection::tellOpenFailure(int error) const
{
    OpenFailure::tell(error, OpenFailure::nodeOf(m_busNumber, m_address));
}

int UvcConnection::stream()
{
    const Request request = takeRequest();
    if (m_running) {
        // Asked first, as the end of a stream whose camera has gone may never come.
        (void)listed();
        stop();
    }
    if (!m_handle || m_gone)
        return m_streamResult = UVC_ERROR_NO_DEVICE;
    return m_streamResult = request.stream ? start(request) : UVC_SUCCESS;
}

int UvcConnection::control(std::uint8_t unit, ControlRequest &request)
{
    if (!m_handle || m_gone)
        return UVC_ERROR_NO_DEVICE;
    return noteResult(m_transfer.run(uvc_get_libusb_handle(m_handle), unit, request));
}

bool UvcConnection::listed()
{
    if (m_gone || !m_handle)
        return !m_gone;
    uvc_device_t **list = nullptr;
    if (uvc_get_device_list(m_context, &list) < 0)
        return true;
    bool found = false;
    for (uvc_device_t **device = list; *device; ++device)
        found = found || (uvc_get_bus_number(*device) == m_busNumber &&
                          uvc_get_device_address(*device) == m_address);
    uvc_free_device_list(list, 1);
    m_gone = !found;
    return found;
}

int UvcConnection::stop()
{
    if (!m_running)
        return UVC_SUCCESS;
    uvc_stop_streaming(m_handle);
    m_running->self.reset();
    m_running.reset();
    return UVC_SUCCESS;
}

int UvcConnection::close()
{
    // A device that left while the library set its interface cannot be closed, nor its library.
    if (!m_context || LibraryFaults::deviceLeftInSetting())
        return UVC_ERROR_NO_DEVICE;
    m_device.reset();
    {
        const std::lock_guard lock(m_releaseMutex);
        const LibraryFaults::SettingsLeftAlone settings;
        // uvc_exit() would close the handle too, but reads it after freeing it.
        if (m_handle)
            uvc_close(std::exchange(m_handle, nullptr));
    }
    uvc_exit(std::exchange(m_context, nullptr));
    return UVC_SUCCESS;
}

void UvcConnection::release()
{
    constexpr int MAXIMUM_INTERFACES = 32;
    const std::lock_guard lock(m_releaseMutex);
    if (!m_handle)
        return;
    // The library remembers which of them it has claimed and refuses the others at once.
    for (int interface = 0; interface < MAXIMUM_INTERFACES; ++interface)
        libusb_release_interface(uvc_get_libusb_handle(m_handle), interface);
}

bool UvcConnection::request(Request request)
{
    const std::lock_guard lock(m_requestMutex);
    return !std::exchange(m_request, std::move(request));
}

void UvcConnection::keep(uvc_device *device)
{
    m_device.reset(device);
    m_busNumber = uvc_get_bus_number(device);
    m_address = uvc_get_device_address(device);
}

UvcConnection::Request UvcConnection::takeRequest()
{
    const std::lock_guard lock(m_requestMutex);
    return std::exchange(m_request, std::nullopt).value_or(Request());
}

int UvcConnection::start(const Request &request)
{
    const std::shared_ptr<UvcStream> &stream = request.stream;
    if (stream->closed()) // another one is wanted by now
        return UVC_SUCCESS;
    uvc_stream_ctrl_t block{};
    const LibraryFaults::QuestionsBounded questions;
    const int agreed = noteResult(request.choice ? negotiateStream(m_handle, *request.choice, block)
                                                 : UVC_ERROR_INVALID_MODE);
    if (questions.unanswered()) // which is no refusal, and may have been of a question left out
        return UVC_ERROR_TIMEOUT;
    // The keeper asks repeatedly, so a refusal is reported once.
    const bool said = m_refusedSize == stream->size();
    if (agreed < 0 && !said)
        qDebug("uvc_get_stream_ctrl_format_size() failed.\n");
    m_refusedSize.reset();
    if (!canBeTransferred(block)) {
        if (!said)
            tellSizeNotOffered(stream->size());
        m_refusedSize = stream->size();
        return UVC_ERROR_INVALID_MODE;
    }
    if (stream->closed())
        return UVC_SUCCESS;
    stream->allocate();
    stream->self = stream;
    const LibraryFaults::RefusalsTold refusals;
    const int started = noteResult(
        uvc_start_streaming(m_handle, &block, &UvcStream::frameArrived, stream.get(), 0));
    if (started < 0)
        stream->self.reset();
    else
        m_running = stream;
    return started;
}

void UvcConnection::tellSizeNotOffered(QSize size) const
{
    const QString words = QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
    if (!m_gone)
        TerminalLines::tell(TerminalLines::Line::SizeNotOffered, {words});
}

int UvcConnection::noteResult(int result)
{
    if (result == UVC_ERROR_NO_DEVICE)
        m_gone = true;
    return result;
}
