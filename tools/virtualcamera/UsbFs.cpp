#include "tools/virtualcamera/UsbFs.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <sys/ioctl.h>

namespace
{

constexpr char HANDLE_KEY[] = "usbfs-handle";

template <class T>
T *structureIn(const IoctlData &data)
{
    return reinterpret_cast<T *>(data->data);
}

/// What a program may still do with a device that is gone.
bool worksUnplugged(unsigned long request)
{
    return request == USBDEVFS_REAPURB || request == USBDEVFS_REAPURBNDELAY ||
           request == USBDEVFS_DISCARDURB;
}

} // namespace

/// One open file of the node.
struct UsbFs::Handle : UrbQueue {
    std::shared_ptr<UsbFs> owner;
    unsigned claimed = 0; ///< interfaces as bits
    /// Its camera was pulled out. It stays so when one is plugged in again: that is another device.
    bool gone = false;
};

UsbFs::UsbFs(UvcFunction &function, CameraFaults &faults)
    : m_function(function)
    , m_faults(faults)
    , m_queue(faults)
{
}

bool UsbFs::plugIn(const std::string &path, int deviceNumber)
{
    const std::lock_guard lock(m_mutex);
    m_deviceNumber = deviceNumber;
    m_function.powerOn(m_faults.withoutExtensionUnit == 0, m_faults.missingSize);
    stopStream();
    m_plugged = m_node.create(path, m_faults.denyOpen != 0);
    return m_plugged;
}

void UsbFs::pullOut(bool dirty)
{
    const std::lock_guard lock(m_mutex);
    m_plugged = false;
    const Payload last = m_queue.next();
    stopStream();
    for (Handle *handle : m_handles) {
        handle->gone = true;
        handle->claimed = 0;
        if (Urb *video = dirty ? handle->firstVideo() : nullptr) {
            video->addPayload(last);
            handle->finish(video);
        }
        while (!handle->pending.empty()) {
            handle->pending.front()->fail(ESHUTDOWN);
            handle->finish(handle->pending.front().get());
        }
        for (const auto &urb : handle->done) {
            if (!dirty && urb->isVideo()) {
                urb->fail(ESHUTDOWN);
                urb->dropPayloads();
            }
        }
    }
    m_node.remove();
}

bool UsbFs::plugged() const
{
    const std::lock_guard lock(m_mutex);
    return m_plugged;
}

std::vector<std::uint8_t> UsbFs::descriptors() const
{
    const std::lock_guard lock(m_mutex);
    return m_function.descriptors();
}

void UsbFs::report(CameraStatistics &statistics) const
{
    const std::lock_guard lock(m_mutex);
    m_function.report(statistics);
    statistics.ioctls = m_ioctls;
    statistics.openHandles = static_cast<int>(m_handles.size());
    statistics.streamWidth = m_current.size.width;
    statistics.streamHeight = m_current.size.height;
    statistics.streamInterval = m_current.interval;
    statistics.streamCoding = m_current.coding;
    statistics.plugged = m_plugged;
    statistics.streaming = m_streaming;
    statistics.deliveries.assign(m_queue.deliveries().begin(), m_queue.deliveries().end());
}

void UsbFs::keep()
{
    const std::lock_guard lock(m_mutex);
    m_kept = shared_from_this();
}

void UsbFs::letGo()
{
    std::shared_ptr<UsbFs> self; // ends behind the lock
    const std::lock_guard lock(m_mutex);
    self = std::move(m_kept);
}

void UsbFs::handleIoctl(UMockdevIoctlClient *client)
{
    const unsigned long request = umockdev_ioctl_client_get_request(client);
    int result = -ENODEV;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_shutDown && request == USBDEVFS_RELEASEINTERFACE &&
            takeFault(m_faults.hangReleases)) {
            g_object_ref(client); // its end would be an answer
            return;
        }
        ++m_ioctls;
        Handle &handle = handleOf(client);
        if (!handle.gone || worksUnplugged(request))
            result = perform(handle, request, umockdev_ioctl_client_get_arg(client));
    }
    umockdev_ioctl_client_complete(client, result < 0 ? -1 : result, result < 0 ? -result : 0);
}

std::optional<UsbFs::Stream> UsbFs::waitForStream()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_shutDown || streamRuns(); });
    if (m_shutDown)
        return std::nullopt;
    return m_current;
}

bool UsbFs::sleepUntil(Clock::time_point time)
{
    std::unique_lock lock(m_mutex);
    return !m_changed.wait_until(lock, time, [this] { return m_shutDown; });
}

UsbFs::Sent UsbFs::send(const Stream &stream, std::vector<Payload> payloads)
{
    const std::lock_guard lock(m_mutex);
    if (!streamRuns() || stream.number != m_current.number)
        return Sent::Ended;
    if (!m_queue.push(std::move(payloads)))
        return Sent::Overrun;
    for (Handle *handle : m_handles)
        m_queue.feed(*handle);
    updateReadiness();
    return Sent::Queued;
}

void UsbFs::shutDown()
{
    const std::lock_guard lock(m_mutex);
    m_shutDown = true;
    m_changed.notify_all();
}

/// Returns what the ioctl returns, or a negative errno.
int UsbFs::perform(Handle &handle, unsigned long request, UMockdevIoctlData *argument)
{
    switch (request) {
    case USBDEVFS_GET_CAPABILITIES: {
        const IoctlData data = resolve(argument, 0, sizeof(std::uint32_t));
        if (!data)
            return -EFAULT;
        *structureIn<std::uint32_t>(data) =
            USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_NO_PACKET_SIZE_LIM |
            USBDEVFS_CAP_BULK_SCATTER_GATHER | USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
        return 0;
    }
    case USBDEVFS_CLAIMINTERFACE:
        return claim(handle, argument, true);
    case USBDEVFS_RELEASEINTERFACE:
        return claim(handle, argument, false);
    case USBDEVFS_SETINTERFACE:
        return setInterface(argument);
    case USBDEVFS_GETDRIVER: // no kernel driver holds an interface
    case USBDEVFS_IOCTL:
        return -ENODATA;
    case USBDEVFS_CLEAR_HALT:
    case USBDEVFS_RESETEP:
    case USBDEVFS_RESET:
    case USBDEVFS_SETCONFIGURATION:
    case USBDEVFS_DISCONNECT_CLAIM:
        return 0;
    case USBDEVFS_GET_SPEED:
        return 3; // high speed
    case USBDEVFS_CONNECTINFO: {
        const IoctlData data = resolve(argument, 0, sizeof(usbdevfs_connectinfo));
        if (!data)
            return -EFAULT;
        *structureIn<usbdevfs_connectinfo>(data) = {static_cast<unsigned>(m_deviceNumber), 0};
        return 0;
    }
    case USBDEVFS_CONTROL:
        return control(argument);
    case USBDEVFS_SUBMITURB:
        return submit(handle, argument);
    case USBDEVFS_DISCARDURB:
        return discard(handle, argument);
    case USBDEVFS_REAPURB:
    case USBDEVFS_REAPURBNDELAY:
        return reap(handle, argument);
    default:
        return -ENOTTY;
    }
}

int UsbFs::claim(Handle &handle, UMockdevIoctlData *argument, bool wanted)
{
    const IoctlData data = resolve(argument, 0, sizeof(unsigned));
    if (!data)
        return -EFAULT;
    const unsigned bit = 1u << (*structureIn<unsigned>(data) & 31);
    if (!wanted) {
        handle.claimed &= ~bit;
        return 0;
    }
    if (heldByAnother(handle, bit) || m_faults.claimBusy)
        return -EBUSY;
    handle.claimed |= bit;
    return 0;
}

int UsbFs::setInterface(UMockdevIoctlData *argument)
{
    const IoctlData data = resolve(argument, 0, sizeof(usbdevfs_setinterface));
    if (!data)
        return -EFAULT;
    const auto *setting = structureIn<usbdevfs_setinterface>(data);
    if (setting->interface == UsbDescriptors::STREAMING_INTERFACE && setting->altsetting == 0 &&
        m_function.settings().isochronous)
        stopStream();
    return 0;
}

int UsbFs::control(UMockdevIoctlData *argument)
{
    const IoctlData data = resolve(argument, 0, sizeof(usbdevfs_ctrltransfer));
    if (!data)
        return -EFAULT;
    const auto *transfer = structureIn<usbdevfs_ctrltransfer>(data);
    const SetupPacket setup{transfer->bRequestType, transfer->bRequest, transfer->wValue,
                            transfer->wIndex, transfer->wLength};
    if (setup.length == 0) {
        std::uint8_t none = 0;
        return answer(setup, &none);
    }
    const IoctlData buffer =
        resolve(data.get(), offsetof(usbdevfs_ctrltransfer, data), setup.length);
    return buffer ? answer(setup, buffer->data) : -EFAULT;
}

int UsbFs::submit(Handle &handle, UMockdevIoctlData *argument)
{
    std::unique_ptr<Urb> urb = Urb::submitted(argument);
    if (!urb)
        return -EFAULT;
    if (urb->request()->type == USBDEVFS_URB_TYPE_CONTROL) {
        constexpr int SETUP_SIZE = 8;
        const int length = urb->request()->buffer_length;
        const IoctlData buffer = resolve(urb->data(), offsetof(usbdevfs_urb, buffer),
                                         static_cast<std::size_t>(std::max(length, 0)));
        SetupPacket setup{};
        if (buffer && length >= SETUP_SIZE)
            setup = SetupPacket::parse(buffer->data);
        if (setup.isClassRequest() && takeFault(m_faults.hangControls)) {
            handle.pending.push_back(std::move(urb));
            return 0;
        }
        const bool complete = buffer && length >= SETUP_SIZE + setup.length;
        urb->finishControl(complete ? answer(setup, buffer->data + SETUP_SIZE) : -EPIPE);
        handle.done.push_back(std::move(urb));
    } else {
        const bool video = urb->isVideo();
        if (video && heldByAnother(handle, 1u << UsbDescriptors::STREAMING_INTERFACE))
            return -EBUSY;
        handle.pending.push_back(std::move(urb));
        if (video) {
            m_queue.feed(handle);
            m_changed.notify_all();
        }
    }
    updateReadiness();
    return 0;
}

int UsbFs::discard(Handle &handle, UMockdevIoctlData *argument)
{
    const std::size_t address = *reinterpret_cast<const std::size_t *>(argument->data);
    for (const auto &urb : handle.pending) {
        if (urb->clientAddress() == address) {
            urb->fail(ENOENT);
            handle.finish(urb.get());
            updateReadiness();
            return 0;
        }
    }
    return -EINVAL;
}

int UsbFs::reap(Handle &handle, UMockdevIoctlData *argument)
{
    if (handle.done.empty()) {
        updateReadiness();
        return handle.gone ? -ENODEV : -EAGAIN;
    }
    const std::unique_ptr<Urb> urb = std::move(handle.done.front());
    handle.done.pop_front();
    urb->fillResult();
    m_queue.noteDelivery(*urb);
    const IoctlData result = resolve(argument, 0, sizeof(void *));
    if (result)
        umockdev_ioctl_data_set_ptr(result.get(), 0, urb->data());
    updateReadiness();
    return 0;
}

int UsbFs::answer(const SetupPacket &setup, std::uint8_t *data)
{
    const int result = m_function.control(setup, data);
    if (const auto commit = m_function.takeCommit()) {
        stopStream();
        m_current = {*commit, m_current.number + 1};
        m_streaming = true;
        m_changed.notify_all();
    }
    return result;
}

/// The end of the client object is the only sign that a program has closed the node.
UsbFs::Handle &UsbFs::handleOf(UMockdevIoctlClient *client)
{
    if (void *known = g_object_get_data(G_OBJECT(client), HANDLE_KEY))
        return *static_cast<Handle *>(known);
    auto *handle = new Handle; // owned by the client object
    handle->owner = shared_from_this();
    handle->gone = !m_plugged || !isCurrentNode(client);
    m_handles.push_back(handle);
    g_object_set_data_full(G_OBJECT(client), HANDLE_KEY, handle, [](gpointer gone) {
        const std::unique_ptr<Handle> last(static_cast<Handle *>(gone));
        last->owner->forget(last.get());
    });
    return *handle;
}

/// Whether the program opened the device that is plugged in now, and not one before.
bool UsbFs::isCurrentNode(UMockdevIoctlClient *client) const
{
    char name[16];
    std::snprintf(name, sizeof name, "/%03d", m_deviceNumber);
    const std::string node = umockdev_ioctl_client_get_devnode(client);
    return node.size() > std::strlen(name) &&
           node.compare(node.size() - std::strlen(name), std::string::npos, name) == 0;
}

bool UsbFs::heldByAnother(const Handle &handle, unsigned interfaceBit) const
{
    return std::any_of(m_handles.begin(), m_handles.end(), [&](const Handle *other) {
        return other != &handle && (other->claimed & interfaceBit);
    });
}

void UsbFs::forget(Handle *handle)
{
    const std::lock_guard lock(m_mutex);
    m_handles.remove(handle);
    if (m_handles.empty())
        stopStream();
    updateReadiness();
}

void UsbFs::updateReadiness()
{
    m_node.setReady(std::any_of(m_handles.begin(), m_handles.end(), [](const Handle *handle) {
        return !handle->gone && !handle->done.empty();
    }));
}

void UsbFs::stopStream()
{
    m_streaming = false;
    m_queue.clear();
}

bool UsbFs::streamRuns() const
{
    const auto isVideo = [](const auto &urb) { return urb->isVideo(); };
    return m_plugged && m_streaming &&
           std::any_of(m_handles.begin(), m_handles.end(), [&isVideo](const Handle *handle) {
               return !handle->gone &&
                      (handle->firstVideo() ||
                       std::any_of(handle->done.begin(), handle->done.end(), isVideo));
           });
}
