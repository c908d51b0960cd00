#pragma once

#include "tools/virtualcamera/CameraFaults.h"
#include "tools/virtualcamera/CameraStatistics.h"
#include "tools/virtualcamera/Payload.h"
#include "tools/virtualcamera/UrbQueue.h"

#include <deque>
#include <vector>

/// The payloads that wait for transfers of the program. Not thread-safe.
class StreamQueue
{
public:
    explicit StreamQueue(CameraFaults &faults);

    /// False if the earlier frames were not yet taken: a camera has memory for two.
    [[nodiscard]] bool push(std::vector<Payload> frame);
    /// Completes the handle's waiting transfers as far as there are payloads.
    void feed(UrbQueue &handle);
    /// Notes the frames that end in a transfer handed to the program now.
    void noteDelivery(const Urb &urb);
    void clear();

    /// The payload that would go next; an empty one if there is none.
    [[nodiscard]] Payload next() const;
    [[nodiscard]] const std::deque<FrameDelivery> &deliveries() const { return m_deliveries; }

private:
    CameraFaults &m_faults;
    std::deque<Payload> m_payloads;
    std::size_t m_frames = 0; ///< frames whose end is in m_payloads
    std::deque<FrameDelivery> m_deliveries;
};
