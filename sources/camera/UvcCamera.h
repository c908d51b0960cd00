#pragma once

#include "sources/camera/BusCamera.h"
#include "sources/camera/CameraLink.h"
#include "sources/camera/CameraProfile.h"
#include "sources/camera/StandardControl.h"
#include "sources/camera/UvcStream.h"
#include "sources/camera/WaitBudget.h"
#include "sources/threads/BoundedWorker.h"

#include <QSize>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class UvcConnection;
struct ControlRequest;

/// The camera on the bus, for the GUI thread: everything that touches the bus runs on a worker, in
/// the order of the calls, except that a stream request goes before controls. The caller waits for
/// answers within a WaitBudget, and asks again later for those that take longer.
///
/// It belongs to one thread at a time: a camera that was opened elsewhere may be handed to the GUI
/// thread.
///
/// Results are libuvc's codes, negative on failure.
class UvcCamera
{
public:
    using FrameHandler = UvcStream::FrameHandler;
    using FrameMemory = UvcStream::FrameMemory;

    UvcCamera();
    /// Gives the camera back. One that does not answer is waited for no longer than half a second,
    /// and given back when it has answered.
    ~UvcCamera();
    UvcCamera(const UvcCamera &) = delete;
    UvcCamera &operator=(const UvcCamera &) = delete;

    /// Whether the bus lists a camera that suits the choice; nothing while the answer is not there,
    /// which the next call then asks for. Every answer is told once.
    [[nodiscard]] std::optional<bool> find(const CameraChoice &choice);
    /// The camera that was found last; the first row of CAMERA_PROFILES before that.
    [[nodiscard]] const CameraIdentity &identity() const { return m_identity; }

    /// Opens the camera that was found: the result, or nothing while it is being opened, which the
    /// next call then asks for.
    std::optional<int> open();
    /// Finds that camera and opens it, for a thread that may wait: the result, UVC_ERROR_TIMEOUT
    /// when it is not there within the bound.
    int openWithin(std::chrono::milliseconds bound, const BusCamera &camera);

    /// Tells the terminal why open() failed with that code, from the worker and so a moment later.
    void tellOpenFailure(int error);

    /// Looks up the extension unit that carries the numbered parameters.
    void findExtensionUnit();
    /// Whether the camera is open, and has not gone, and the unit was not found.
    [[nodiscard]] bool lacksExtensionUnit() const;
    /// None before the camera is open.
    [[nodiscard]] StandardUnits standardUnits() const;

    /// The size of the stream that a wish for `size` gives. A camera of CAMERA_PROFILES gives that
    /// one or none, any other the nearest that it has.
    [[nodiscard]] QSize sizeFor(QSize size) const;
    /// The sizes that it offers up to LARGEST_SIZE, the largest first; none before it is open.
    [[nodiscard]] std::vector<QSize> sizes() const;
    static constexpr QSize LARGEST_SIZE{3840, 2160};
    /// Ends the stream that runs and asks for one of sizeFor(size). The handler gets each frame
    /// that can be decoded; frames whose own header gives another size than the stream's are
    /// dropped. Without a handle, or when the camera does not agree, there is no stream; that is
    /// logged. Returns once the frame in flight is done; the rest follows on the worker.
    void startStreaming(QSize size, int framesPerSecond, FrameHandler handler,
                        const FrameMemory &memory = {});

    /// When it returns no frame is in the handler and none will come, whatever the camera does.
    void stopDelivery();
    /// stopDelivery(), then ends the stream on the worker.
    void stopStreaming();
    /// Whether a stream was asked for.
    [[nodiscard]] bool streaming() const;

    /// What a control would fail with at once: UVC_ERROR_NO_DEVICE for a camera that has gone or
    /// was never opened, UVC_ERROR_NOT_FOUND without an extension unit; 0 otherwise.
    [[nodiscard]] int controlError() const;
    /// Sends controls of the extension unit one after the other, without those that were answered
    /// before, up to the first that the camera does not answer. The ticket gives the result of the
    /// last one sent; the bytes that were read are then in the control.
    BoundedWorker::Ticket send(std::vector<std::shared_ptr<ControlRequest>> controls);
    /// The same for that unit.
    BoundedWorker::Ticket send(std::uint8_t unit,
                               std::vector<std::shared_ptr<ControlRequest>> controls);

    /// Fills in the state of this camera and its stream, except `seen` and `running`.
    void report(CameraLink &link) const;
    /// The connection, through which another thread can release the interfaces while this camera
    /// hangs.
    [[nodiscard]] std::shared_ptr<UvcConnection> connection() const { return m_connection; }

    /// Waits as long as the budget allows; not at all while an earlier answer is late.
    std::optional<int> wait(const BoundedWorker::Ticket &ticket);
    /// Whether an answer that was waited for in vain has not come yet.
    [[nodiscard]] bool late() const;

private:
    void noteOpened(int result);
    [[nodiscard]] std::vector<StreamFormats::Offer> offers() const;
    [[nodiscard]] std::optional<StreamFormats::Choice> choiceFor(QSize size,
                                                                 int framesPerSecond) const;
    void request(std::shared_ptr<UvcStream> stream,
                 const std::optional<StreamFormats::Choice> &choice);

    std::shared_ptr<UvcConnection> m_connection;
    BoundedWorker m_worker;
    WaitBudget m_budget;
    BoundedWorker::Ticket m_search;
    BoundedWorker::Ticket m_opening;
    BoundedWorker::Ticket m_late;
    BoundedWorker::Ticket m_streaming;
    qint64 m_requestedUs = 0;
    int m_openResult = 0;
    CameraIdentity m_identity{CAMERA_PROFILES[0].vendorId, CAMERA_PROFILES[0].productId, {}};
    bool m_opened = false;
    std::uint8_t m_extensionUnit = 0;
    std::shared_ptr<UvcStream> m_stream;
    QSize m_wantedSize;
};
