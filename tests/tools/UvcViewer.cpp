#include "tests/tools/UvcViewer.h"

#include <QElapsedTimer>
#include <QThread>

#include <chrono>
#include <cstring>

namespace
{

constexpr int VENDOR = 0x04FC, PRODUCT = 0x6330, UNIT = 4;

} // namespace

UvcViewer::UvcViewer()
{
    uvc_init(&m_context, nullptr);
}

UvcViewer::~UvcViewer()
{
    if (m_abandoned)
        return;
    close();
    uvc_exit(m_context);
}

bool UvcViewer::find()
{
    if (device)
        uvc_unref_device(device);
    device = nullptr;
    return uvc_find_device(m_context, &device, VENDOR, PRODUCT, nullptr) == UVC_SUCCESS;
}

bool UvcViewer::waitUntilFound(bool wanted)
{
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 10000; QThread::msleep(5)) {
        if (find() == wanted)
            return true;
    }
    return false;
}

uvc_error_t UvcViewer::open()
{
    return uvc_open(device, &handle);
}

bool UvcViewer::openWhenFound()
{
    const uvc_error_t result = waitUntilFound(true) ? open() : UVC_ERROR_NO_DEVICE;
    if (result < 0)
        uvc_perror(result, "openWhenFound");
    return result == UVC_SUCCESS;
}

void UvcViewer::close()
{
    if (handle)
        uvc_close(handle);
    if (device)
        uvc_unref_device(device);
    handle = nullptr;
    device = nullptr;
}

void UvcViewer::abandon()
{
    m_abandoned = true;
}

uvc_error_t UvcViewer::start(QSize size)
{
    uvc_stream_ctrl_t control{};
    const uvc_error_t result = uvc_get_stream_ctrl_format_size(
        handle, &control, UVC_FRAME_FORMAT_MJPEG, size.width(), size.height(), 30);
    if (result != UVC_SUCCESS)
        return result;
    const auto callback = [](uvc_frame_t *frame, void *viewer) {
        static_cast<UvcViewer *>(viewer)->frameArrived(frame);
    };
    return uvc_start_streaming(handle, &control, callback, this, 0);
}

void UvcViewer::stop()
{
    uvc_stop_streaming(handle);
    const std::lock_guard lock(m_mutex);
    m_frames.clear();
}

std::optional<QByteArray> UvcViewer::takeFrame(int timeoutMs)
{
    std::unique_lock lock(m_mutex);
    if (!m_arrived.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                            [this] { return !m_frames.empty(); }))
        return std::nullopt;
    QByteArray frame = m_frames.front();
    m_frames.pop_front();
    return frame;
}

const uvc_extension_unit_t *UvcViewer::extensionUnit() const
{
    return uvc_get_extension_units(handle);
}

int UvcViewer::set(int selector, quint64 value)
{
    return uvc_set_ctrl(handle, UNIT, static_cast<uint8_t>(selector), &value, sizeof value);
}

int UvcViewer::get(int selector, quint64 &value)
{
    return uvc_get_ctrl(handle, UNIT, static_cast<uint8_t>(selector), &value, sizeof value,
                        UVC_GET_CUR);
}

void UvcViewer::setParameter(quint64 id, quint64 value)
{
    set(19, id);
    set(20, value);
}

quint64 UvcViewer::parameter(quint64 id)
{
    quint64 value = 0;
    set(19, id);
    get(20, value);
    return value;
}

void UvcViewer::frameArrived(const uvc_frame_t *frame)
{
    const std::lock_guard lock(m_mutex);
    m_frames.emplace_back(static_cast<const char *>(frame->data),
                          static_cast<int>(frame->data_bytes));
    m_arrived.notify_one();
}
