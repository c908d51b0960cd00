#include "tools/virtualcamera/UrbQueue.h"

#include "tools/virtualcamera/UsbDescriptors.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace
{

constexpr std::size_t BUFFER_POINTER = offsetof(usbdevfs_urb, buffer);

std::size_t pointerIn(const UMockdevIoctlData *data)
{
    std::size_t pointer = 0;
    std::memcpy(&pointer, data->data, sizeof pointer);
    return pointer;
}

} // namespace

IoctlData resolve(UMockdevIoctlData *data, std::size_t offset, std::size_t length)
{
    return IoctlData(umockdev_ioctl_data_resolve(data, offset, length, nullptr));
}

std::unique_ptr<Urb> Urb::submitted(UMockdevIoctlData *argument)
{
    const std::size_t address = pointerIn(argument);
    IoctlData data = resolve(argument, 0, sizeof(usbdevfs_urb));
    if (!data)
        return nullptr;
    const auto *request = reinterpret_cast<const usbdevfs_urb *>(data->data);
    if (request->type == USBDEVFS_URB_TYPE_ISO) {
        // The packets stand behind the fixed part, so it is read again in its whole length.
        // Reloading forgets the first reading, but the argument still points at that local copy.
        const std::size_t length =
            sizeof *request +
            static_cast<std::size_t>(request->number_of_packets) * sizeof(usbdevfs_iso_packet_desc);
        data.reset();
        umockdev_ioctl_data_reload(argument, nullptr);
        std::memcpy(argument->data, &address, sizeof address);
        data = resolve(argument, 0, length);
        if (!data)
            return nullptr;
    }
    return std::unique_ptr<Urb>(new Urb(std::move(data), address));
}

Urb::Urb(IoctlData data, std::size_t clientAddress)
    : m_data(std::move(data))
    , m_clientAddress(clientAddress)
{
}

bool Urb::isVideo() const
{
    return request()->endpoint == UsbDescriptors::VIDEO_ENDPOINT;
}

std::size_t Urb::capacity() const
{
    return request()->type == USBDEVFS_URB_TYPE_ISO
               ? static_cast<std::size_t>(request()->number_of_packets)
               : 1;
}

void Urb::finishControl(int result)
{
    m_isControl = true;
    m_status = std::min(result, 0);
    request()->actual_length = std::max(result, 0);
}

void Urb::fillResult()
{
    request()->status = m_status;
    request()->error_count = 0;
    if (m_isControl)
        return;
    request()->actual_length = 0;
    if (request()->type == USBDEVFS_URB_TYPE_ISO)
        fillIsochronous();
    else if (!m_payloads.empty())
        fillBulk();
}

void Urb::fillBulk()
{
    const Payload &payload = m_payloads.front();
    if (payload.size() > static_cast<std::size_t>(request()->buffer_length))
        return;
    const IoctlData buffer = resolve(m_data.get(), BUFFER_POINTER, payload.size());
    if (!buffer)
        return;
    payload.copyTo(buffer->data);
    request()->actual_length = static_cast<int>(payload.size());
}

void Urb::fillIsochronous()
{
    usbdevfs_iso_packet_desc *packets = request()->iso_frame_desc;
    const std::size_t count = capacity();
    for (std::size_t i = 0; i < count; ++i) {
        packets[i].status = static_cast<unsigned>(m_status);
        packets[i].actual_length = 0;
    }
    if (m_payloads.empty())
        return;
    // Every packet has the room it asked for, used or not; only the used ones are fetched.
    const std::size_t stride = packets[0].length;
    const std::size_t used = (m_payloads.size() - 1) * stride + m_payloads.back().size();
    if (used > static_cast<std::size_t>(request()->buffer_length))
        return;
    const IoctlData buffer = resolve(m_data.get(), BUFFER_POINTER, used);
    if (!buffer)
        return;
    for (std::size_t i = 0; i < m_payloads.size(); ++i) {
        m_payloads[i].copyTo(buffer->data + i * stride);
        packets[i].actual_length = static_cast<unsigned>(m_payloads[i].size());
        request()->actual_length += static_cast<int>(m_payloads[i].size());
    }
}

Urb *UrbQueue::firstVideo() const
{
    const auto found = std::find_if(pending.begin(), pending.end(),
                                    [](const auto &urb) { return urb->isVideo(); });
    return found == pending.end() ? nullptr : found->get();
}

void UrbQueue::finish(const Urb *urb)
{
    const auto found = std::find_if(pending.begin(), pending.end(),
                                    [urb](const auto &other) { return other.get() == urb; });
    if (found == pending.end())
        return;
    done.push_back(std::move(*found));
    pending.erase(found);
}
