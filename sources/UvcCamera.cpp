#include "UvcCamera.h"

#include "media/CaptureClock.h"
#include "JpegHeader.h"

#include <libuvc/libuvc.h>

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

namespace
{

using std::chrono::milliseconds;

// A camera that works answers each of these within a few milliseconds; the longest, opening, waits
// for the kernel's driver to let go of the interface.
constexpr milliseconds INIT_BOUND{4000};
constexpr milliseconds FIND_BOUND{1500};
constexpr milliseconds OPEN_BOUND{4000};
constexpr milliseconds NEGOTIATE_BOUND{3000};
constexpr milliseconds CONTROL_BOUND{1500};
constexpr milliseconds STOP_BOUND{2000};
constexpr milliseconds CLOSE_BOUND{2000};
// After an unplug libuvc may wait for transfers that never come back.
constexpr milliseconds STOP_GONE_BOUND{300};

constexpr std::size_t BYTES_PER_PIXEL = 3;

// The library divides by the payload size that the camera answered, and allocates a hundred buffers
// of it; its own frame buffer bounds what can make sense.
constexpr std::uint32_t MAXIMUM_PAYLOAD = 16u << 20;

void nameFrameThread()
{
    thread_local bool named = false;
    if (!named)
        pthread_setname_np(pthread_self(), "LiveFrames");
    named = true;
}

} // namespace

/// What the frame thread works with. It outlives the camera when that thread cannot be ended.
class UvcCamera::Stream
{
public:
    Stream(QSize size, FrameHandler handler)
        : m_rgb(uvc_allocate_frame(static_cast<std::size_t>(size.width()) *
                                   static_cast<std::size_t>(size.height()) * BYTES_PER_PIXEL))
        , m_handler(std::move(handler))
    {
    }

    ~Stream()
    {
        if (m_rgb)
            uvc_free_frame(m_rgb);
    }

    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;

    /// Waits for the frame in flight; later ones are dropped.
    void close()
    {
        m_closing = true;
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_handler = nullptr;
    }

    static void frameArrived(uvc_frame_t *frame, void *stream)
    {
        const qint64 microseconds = captureMicroseconds();
        nameFrameThread();
        static_cast<Stream *>(stream)->deliver(frame, microseconds);
    }

    /// Keeps the stream alive for as long as the library may call it.
    std::shared_ptr<Stream> self;

private:
    void deliver(uvc_frame_t *frame, qint64 microseconds)
    {
        // Seen before the lock, so that frames which follow each other without a pause cannot keep
        // close() from getting it.
        if (m_closing)
            return;
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_handler || !m_rgb)
            return;
        // The conversion writes rows by the JPEG's own size into a frame made for the stream's.
        const QSize size(static_cast<int>(frame->width), static_cast<int>(frame->height));
        const QSize own = jpegFrameSize(frame->data, frame->data_bytes);
        if (!own.isEmpty() && own != size)
            return;
        const uvc_error_t result = own.isEmpty() ? UVC_ERROR_OTHER : uvc_mjpeg2rgb(frame, m_rgb);
        if (result < 0) {
            uvc_perror(result, "ERROR");
            return;
        }
        m_handler(m_rgb->data, size.width(), size.height(), microseconds);
    }

    /// Guards the handler and the frame, from the arrival of a frame to the handler's return.
    std::mutex m_mutex;
    std::atomic<bool> m_closing{false};
    uvc_frame_t *m_rgb;
    FrameHandler m_handler;
};

struct UvcCamera::StreamControl {
    uvc_stream_ctrl_t block{};
};

void UvcCamera::Unreference::operator()(uvc_device *device) const
{
    uvc_unref_device(device);
}

UvcCamera::UvcCamera()
    : m_worker("UvcCommands")
    , m_control(std::make_shared<StreamControl>())
{
    const auto context = std::make_shared<uvc_context_t *>(nullptr);
    const auto result = m_worker.call(
        INIT_BOUND, [context] { return static_cast<int>(uvc_init(context.get(), nullptr)); });
    if (result && *result >= 0)
        m_context = *context;
}

UvcCamera::~UvcCamera()
{
    stopStreaming();
    if (!m_context || gone())
        return;
    m_worker.call(CLOSE_BOUND, [context = m_context, handle = m_handle] {
        // uvc_exit() would close the handle too, but reads it after freeing it.
        if (handle)
            uvc_close(handle);
        uvc_exit(context);
        return 0;
    });
}

UvcCamera::Device UvcCamera::find(int vendorId, int productId)
{
    if (!m_context || m_worker.busy())
        return nullptr;
    const auto found = std::make_shared<Device>();
    const auto result =
        m_worker.call(FIND_BOUND, [context = m_context, found, vendorId, productId] {
            uvc_device_t *device = nullptr;
            const uvc_error_t error =
                uvc_find_device(context, &device, vendorId, productId, nullptr);
            found->reset(error < 0 ? nullptr : device);
            return static_cast<int>(error);
        });
    return result ? std::move(*found) : nullptr;
}

int UvcCamera::open(Device device)
{
    if (!device)
        return UVC_ERROR_NO_DEVICE;
    m_busNumber = uvc_get_bus_number(device.get());
    m_deviceAddress = uvc_get_device_address(device.get());
    const auto kept = std::make_shared<Device>(std::move(device));
    const auto handle = std::make_shared<uvc_device_handle_t *>(nullptr);
    const auto result = m_worker.call(OPEN_BOUND, [kept, handle] {
        return static_cast<int>(uvc_open(kept->get(), handle.get()));
    });
    if (!result) {
        m_gone = true;
        return UVC_ERROR_TIMEOUT;
    }
    m_handle = *result < 0 ? nullptr : *handle;
    return *result;
}

void UvcCamera::findExtensionUnit(const std::uint8_t (&code)[16])
{
    m_extensionUnit = 0;
    if (!m_handle)
        return;
    // A walk over what was parsed when the camera was opened; nothing crosses the bus.
    for (const uvc_extension_unit_t *unit = uvc_get_extension_units(m_handle); unit;
         unit = unit->next) {
        if (std::memcmp(unit->guidExtensionCode, code, sizeof code) == 0) {
            m_extensionUnit = unit->bUnitID;
            return;
        }
    }
}

int UvcCamera::negotiate(QSize size, int framesPerSecond)
{
    m_control = std::make_shared<StreamControl>();
    if (!m_handle || m_gone)
        return UVC_ERROR_NO_DEVICE;
    const auto result = m_worker.call(
        NEGOTIATE_BOUND, [handle = m_handle, control = m_control, size, framesPerSecond] {
            return static_cast<int>(
                uvc_get_stream_ctrl_format_size(handle, &control->block, UVC_FRAME_FORMAT_MJPEG,
                                                size.width(), size.height(), framesPerSecond));
        });
    if (!result) // the block may still be written
        m_control = std::make_shared<StreamControl>();
    noteResult(result.value_or(UVC_ERROR_TIMEOUT));
    return result.value_or(UVC_ERROR_TIMEOUT);
}

int UvcCamera::startStreaming(QSize size, FrameHandler handler)
{
    stopStreaming();
    if (!m_handle || m_gone)
        return UVC_ERROR_NO_DEVICE;
    const std::uint32_t payload = m_control->block.dwMaxPayloadTransferSize;
    if (payload == 0 || payload > MAXIMUM_PAYLOAD)
        return UVC_ERROR_INVALID_MODE;
    m_stream = std::make_shared<Stream>(size, std::move(handler));
    const auto result =
        m_worker.call(NEGOTIATE_BOUND, [handle = m_handle, control = m_control, stream = m_stream] {
            stream->self = stream;
            const uvc_error_t error = uvc_start_streaming(handle, &control->block,
                                                          &Stream::frameArrived, stream.get(), 0);
            if (error < 0)
                stream->self.reset();
            return static_cast<int>(error);
        });
    if (!result || *result < 0) {
        m_stream->close();
        m_stream.reset();
    }
    noteResult(result.value_or(UVC_ERROR_NO_DEVICE));
    return result.value_or(UVC_ERROR_TIMEOUT);
}

void UvcCamera::silence()
{
    if (m_stream)
        m_stream->close();
}

void UvcCamera::stopStreaming()
{
    if (!m_stream)
        return;
    silence();
    const milliseconds bound = gone() ? STOP_GONE_BOUND : STOP_BOUND;
    const auto stopped = m_worker.call(bound, [handle = m_handle, stream = m_stream] {
        uvc_stop_streaming(handle);
        stream->self.reset();
        return 0;
    });
    if (!stopped)
        m_gone = true;
    m_stream.reset();
}

bool UvcCamera::streaming() const
{
    return m_stream != nullptr;
}

int UvcCamera::setControl(std::uint8_t selector, const void *data, std::size_t length)
{
    return transfer(false, selector, const_cast<void *>(data), length);
}

int UvcCamera::getControl(std::uint8_t selector, void *data, std::size_t length)
{
    return transfer(true, selector, data, length);
}

int UvcCamera::transfer(bool read, std::uint8_t selector, void *data, std::size_t length)
{
    if (!m_handle || m_gone)
        return UVC_ERROR_NO_DEVICE;
    if (m_extensionUnit == 0)
        return UVC_ERROR_NOT_FOUND;
    if (m_worker.busy())
        return UVC_ERROR_BUSY;
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    const auto buffer = std::make_shared<std::vector<std::uint8_t>>(bytes, bytes + length);
    const auto result = m_worker.call(
        CONTROL_BOUND, [handle = m_handle, unit = m_extensionUnit, read, selector, buffer] {
            const int size = static_cast<int>(buffer->size());
            return read ? uvc_get_ctrl(handle, unit, selector, buffer->data(), size, UVC_GET_CUR)
                        : uvc_set_ctrl(handle, unit, selector, buffer->data(), size);
        });
    if (result && *result > 0 && read)
        std::memcpy(data, buffer->data(), std::min(length, static_cast<std::size_t>(*result)));
    noteResult(result.value_or(UVC_ERROR_TIMEOUT));
    return result.value_or(UVC_ERROR_TIMEOUT);
}

void UvcCamera::noteResult(int result)
{
    if (result == UVC_ERROR_NO_DEVICE)
        m_gone = true;
}

bool UvcCamera::gone()
{
    if (m_gone || !m_handle)
        return m_gone;
    const auto listed = m_worker.call(FIND_BOUND, [context = m_context, bus = m_busNumber,
                                                   address = m_deviceAddress] {
        uvc_device_t **list = nullptr;
        if (uvc_get_device_list(context, &list) < 0)
            return 0;
        int count = 0;
        for (uvc_device_t **device = list; *device; ++device)
            count +=
                uvc_get_bus_number(*device) == bus && uvc_get_device_address(*device) == address;
        uvc_free_device_list(list, 1);
        return count;
    });
    m_gone = listed.value_or(0) == 0;
    return m_gone;
}
