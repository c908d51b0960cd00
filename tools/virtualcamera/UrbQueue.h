#pragma once

#include "tools/virtualcamera/Payload.h"

#include <umockdev.h>

#include <deque>
#include <linux/usbdevice_fs.h>
#include <memory>
#include <vector>

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
/// A piece of the program's memory, copied here for the time of an ioctl.
using IoctlData = std::unique_ptr<UMockdevIoctlData, GObjectUnref>;

/// `length` bytes behind the pointer at `offset` of `data`; null if the program's memory cannot be
/// read there.
[[nodiscard]] IoctlData resolve(UMockdevIoctlData *data, std::size_t offset, std::size_t length);

/// One transfer that the program has submitted and not yet reaped.
class Urb
{
public:
    /// Null if the program's memory cannot be read. `argument` is that of the submitting ioctl.
    [[nodiscard]] static std::unique_ptr<Urb> submitted(UMockdevIoctlData *argument);

    [[nodiscard]] usbdevfs_urb *request() const
    {
        return reinterpret_cast<usbdevfs_urb *>(m_data->data);
    }
    [[nodiscard]] UMockdevIoctlData *data() const { return m_data.get(); }
    /// Where the program keeps it; names it in a discard.
    [[nodiscard]] std::size_t clientAddress() const { return m_clientAddress; }
    [[nodiscard]] bool isVideo() const;
    /// How many payloads it can take.
    [[nodiscard]] std::size_t capacity() const;

    void finishControl(int result);
    void fail(int error) { m_status = -error; }
    void addPayload(Payload payload) { m_payloads.push_back(std::move(payload)); }
    void dropPayloads() { m_payloads.clear(); }
    [[nodiscard]] const std::vector<Payload> &payloads() const { return m_payloads; }

    /// Writes the result and the payloads into the program's memory; only while the program waits
    /// in an ioctl on this device is that reachable.
    void fillResult();

private:
    Urb(IoctlData data, std::size_t clientAddress);
    void fillBulk();
    void fillIsochronous();

    IoctlData m_data;
    std::size_t m_clientAddress;
    std::vector<Payload> m_payloads;
    int m_status = 0;
    bool m_isControl = false;
};

/// The transfers of one open handle, waiting and finished.
struct UrbQueue {
    std::deque<std::unique_ptr<Urb>> pending;
    std::deque<std::unique_ptr<Urb>> done;

    [[nodiscard]] Urb *firstVideo() const;
    /// Moves a waiting transfer to the finished ones.
    void finish(const Urb *urb);
};
