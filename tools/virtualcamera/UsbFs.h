#pragma once

#include "tools/virtualcamera/DeviceNode.h"
#include "tools/virtualcamera/StreamQueue.h"
#include "tools/virtualcamera/UrbQueue.h"
#include "tools/virtualcamera/UvcFunction.h"

#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// The kernel's side of the device node: answers the ioctls of programs that have it open, queues
/// their transfers and fills them with the payloads of the streamer.
///
/// handleIoctl() comes from umockdev's thread, the streamer's calls from its own, all others from
/// any. Held by a shared pointer because programs may have the node open for longer than there is
/// a camera.
class UsbFs : public std::enable_shared_from_this<UsbFs>
{
public:
    using Clock = std::chrono::steady_clock;

    UsbFs(UvcFunction &function, CameraFaults &faults);

    /// Puts a powered-on camera at the node `path`.
    [[nodiscard]] bool plugIn(const std::string &path, int deviceNumber);
    /// Ends every transfer as an unplug does, and refuses new ones of those who have the node open,
    /// for ever. With `dirty`, payloads that came before still complete, and one more.
    void pullOut(bool dirty);
    [[nodiscard]] bool plugged() const;
    [[nodiscard]] std::vector<std::uint8_t> descriptors() const;
    void report(CameraStatistics &statistics) const;

    void handleIoctl(UMockdevIoctlClient *client);
    /// Lives until letGo(), which may be the end of it.
    void keep();
    void letGo();

    /// A stream from its commit to its end; two of the same size differ in their number.
    struct Stream : UvcFunction::Commit {
        unsigned number = 0;
    };
    /// Blocks the streamer until a stream runs; nothing after shutDown().
    [[nodiscard]] std::optional<Stream> waitForStream();
    /// False after shutDown().
    [[nodiscard]] bool sleepUntil(Clock::time_point time);
    enum class Sent {
        Queued,
        Overrun, ///< the program has not yet taken the earlier frames
        Ended,   ///< so has the stream
    };
    /// Puts a frame of that stream on the bus.
    [[nodiscard]] Sent send(const Stream &stream, std::vector<Payload> payloads);
    /// From now on the function and the faults may cease to be. Nothing may be plugged in.
    void shutDown();

private:
    struct Handle;

    [[nodiscard]] int perform(Handle &handle, unsigned long request, UMockdevIoctlData *argument);
    [[nodiscard]] int claim(Handle &handle, UMockdevIoctlData *argument, bool wanted);
    [[nodiscard]] int setInterface(UMockdevIoctlData *argument);
    [[nodiscard]] int control(UMockdevIoctlData *argument);
    [[nodiscard]] int submit(Handle &handle, UMockdevIoctlData *argument);
    [[nodiscard]] int discard(Handle &handle, UMockdevIoctlData *argument);
    [[nodiscard]] int reap(Handle &handle, UMockdevIoctlData *argument);
    [[nodiscard]] int answer(const SetupPacket &setup, std::uint8_t *data);

    Handle &handleOf(UMockdevIoctlClient *client);
    [[nodiscard]] bool isCurrentNode(UMockdevIoctlClient *client) const;
    [[nodiscard]] bool heldByAnother(const Handle &handle, unsigned interfaceBit) const;
    void forget(Handle *handle);
    void updateReadiness();
    void stopStream();
    [[nodiscard]] bool streamRuns() const;

    mutable std::mutex m_mutex; ///< guards all below
    std::condition_variable m_changed;
    UvcFunction &m_function;
    CameraFaults &m_faults;
    DeviceNode m_node;
    std::list<Handle *> m_handles; ///< each owned by its umockdev client
    StreamQueue m_queue;
    Stream m_current;
    std::uint64_t m_ioctls = 0;
    int m_deviceNumber = 0;
    bool m_plugged = false;
    bool m_streaming = false;
    bool m_shutDown = false;
    std::shared_ptr<UsbFs> m_kept;
};
