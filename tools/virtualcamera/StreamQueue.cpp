#include "tools/virtualcamera/StreamQueue.h"

#include <cerrno>
#include <ctime>
#include <utility>

namespace
{

constexpr std::size_t FRAMES_KEPT = 2;
constexpr std::size_t DELIVERIES_KEPT = 256;

std::int64_t monotonicNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * std::int64_t{1000000000} + now.tv_nsec;
}

} // namespace

StreamQueue::StreamQueue(CameraFaults &faults)
    : m_faults(faults)
{
}

bool StreamQueue::push(std::vector<Payload> frame)
{
    if (m_frames >= FRAMES_KEPT)
        return false;
    for (Payload &payload : frame) {
        m_frames += payload.endsFrame();
        m_payloads.push_back(std::move(payload));
    }
    return true;
}

void StreamQueue::feed(UrbQueue &handle)
{
    while (Urb *urb = handle.firstVideo()) {
        if (takeFault(m_faults.endpointStalls)) {
            urb->fail(EPIPE);
            handle.finish(urb);
            continue;
        }
        if (m_payloads.empty())
            return;
        for (std::size_t room = urb->capacity(); room && !m_payloads.empty(); --room) {
            m_frames -= m_payloads.front().endsFrame();
            urb->addPayload(std::move(m_payloads.front()));
            m_payloads.pop_front();
        }
        handle.finish(urb);
    }
}

void StreamQueue::noteDelivery(const Urb &urb)
{
    for (const Payload &payload : urb.payloads()) {
        if (!payload.endsFrame())
            continue;
        m_deliveries.push_back({payload.frameNumber, monotonicNs()});
        if (m_deliveries.size() > DELIVERIES_KEPT)
            m_deliveries.pop_front();
    }
}

void StreamQueue::clear()
{
    m_payloads.clear();
    m_frames = 0;
}

Payload StreamQueue::next() const
{
    return m_payloads.empty() ? Payload() : m_payloads.front();
}
