#pragma once

#include "sources/camera/BusCamera.h"
#include "sources/camera/CameraBus.h"
#include "sources/camera/ControlTransfer.h"
#include "sources/camera/StandardControl.h"
#include "sources/camera/StreamFormats.h"
#include "sources/camera/UvcStream.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

struct uvc_context;
struct uvc_device;
struct uvc_device_handle;

/// libuvc's side of the camera: context, device, handle and running stream. Every function may wait
/// for the bus without end, so all of them belong to a worker's thread, but for those that say
/// otherwise. It outlives the camera object while one of them is on its way.
///
/// A camera that has gone is latched: nothing but the end of its stream and close() touches it from
/// then on. A camera that does not answer has not gone.
///
/// Results are libuvc's codes, negative on failure.
class UvcConnection
{
public:
    /// What is to be streamed; without a stream, nothing.
    struct Request {
        std::shared_ptr<UvcStream> stream;
        /// None when the camera has nothing that suits.
        std::optional<StreamFormats::Choice> choice;
    };

    UvcConnection() = default;
    ~UvcConnection();
    UvcConnection(const UvcConnection &) = delete;
    UvcConnection &operator=(const UvcConnection &) = delete;

    int initialise();
    /// Keeps the first camera that the bus lists now and that suits the choice.
    int find(const CameraChoice &choice);
    /// Keeps the camera that is there.
    int find(std::uint8_t busNumber, std::uint8_t address);
    /// Opens the camera found last; the library takes the interface over from a kernel driver.
    int open();
    /// Tells the terminal why open() failed with that code.
    void tellOpenFailure(int error) const;
    /// Brings the camera from the running stream to the one wanted last.
    int stream();
    /// One control of that unit.
    int control(std::uint8_t unit, ControlRequest &request);
    /// Whether the bus still lists the open camera; one that is missing has gone.
    bool listed();
    /// Ends the stream that runs.
    int stop();
    /// Gives the camera and the library back, also when the camera has gone.
    int close();

    /// The camera that find(choice) kept last, for who knows that the call has ended.
    [[nodiscard]] const BusCamera &found() const { return m_found; }
    /// What the camera offers, as handle().
    [[nodiscard]] const std::vector<StreamFormats::Offer> &offers() const { return m_offers; }
    [[nodiscard]] const StandardUnits &units() const { return m_units; }

    // Any thread --------------------------------------------------------------------------------
    [[nodiscard]] bool gone() const { return m_gone; }
    /// Sets what stream() is to achieve. Returns whether a call of stream() is needed for it.
    bool request(Request request);
    /// Others wait for the worker: a control that does not answer is given up soon.
    void hurry() { m_transfer.hurry(); }
    /// Gives the camera's interfaces back, so that another connection can have them, while a call
    /// of this one hangs.
    void release();
    /// How the stream that was asked for last was begun or ended.
    [[nodiscard]] int streamResult() const { return m_streamResult; }
    /// Where the camera is; after find().
    [[nodiscard]] std::uint8_t busNumber() const { return m_busNumber; }
    [[nodiscard]] std::uint8_t address() const { return m_address; }

    /// Once open() has succeeded, on any thread for as long as close() has not been called.
    [[nodiscard]] uvc_device_handle *handle() const { return m_handle; }

private:
    struct Unreference {
        void operator()(uvc_device *device) const;
    };

    void keep(uvc_device *device);
    [[nodiscard]] Request takeRequest();
    int start(const Request &request);
    void tellSizeNotOffered(QSize size) const;
    int noteResult(int result);

    uvc_context *m_context = nullptr;
    CameraBus m_bus;
    BusCamera m_found;
    std::vector<StreamFormats::Offer> m_offers;
    StandardUnits m_units;
    std::unique_ptr<uvc_device, Unreference> m_device;
    uvc_device_handle *m_handle = nullptr;
    std::mutex m_releaseMutex; ///< keeps release() and the closing of the handle apart
    std::uint8_t m_busNumber = 0;
    std::uint8_t m_address = 0;
    std::shared_ptr<UvcStream> m_running;
    /// The size that the camera refused when it was asked last.
    std::optional<QSize> m_refusedSize;
    ControlTransfer m_transfer;
    std::atomic<bool> m_gone{false};
    std::atomic<int> m_streamResult{0};

    std::mutex m_requestMutex; ///< guards the request
    std::optional<Request> m_request;
};
