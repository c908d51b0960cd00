#pragma once

#include <QByteArray>
#include <QSize>

#include <libuvc/libuvc.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

/// A bare viewer of the camera over the real libuvc, for tests of the emulated one. Streaming
/// frames arrive on libuvc's thread and wait here to be taken by the test.
class UvcViewer
{
public:
    UvcViewer();
    /// Closes everything, unless the camera was abandoned.
    ~UvcViewer();
    UvcViewer(const UvcViewer &) = delete;
    UvcViewer &operator=(const UvcViewer &) = delete;

    /// Whether the camera is on the bus now.
    [[nodiscard]] bool find();
    /// find() until it is as wanted; false after ten seconds.
    [[nodiscard]] bool waitUntilFound(bool wanted);
    [[nodiscard]] uvc_error_t open();
    /// Waits for the camera and opens it; false, with libuvc's reason in the log, when that fails.
    [[nodiscard]] bool openWhenFound();
    void close();
    /// Forgets the open camera without closing it: with the camera gone, libusb 1.0.26 would abort.
    void abandon();

    /// The result of the negotiation, or of the start if that went well.
    [[nodiscard]] uvc_error_t start(QSize size);
    void stop();

    /// The next frame as it came, Motion-JPEG; nothing after `timeoutMs`.
    [[nodiscard]] std::optional<QByteArray> takeFrame(int timeoutMs = 10000);

    [[nodiscard]] const uvc_extension_unit_t *extensionUnit() const;
    /// libuvc's result of an exchange of 8 bytes with the unit.
    int set(int selector, quint64 value);
    int get(int selector, quint64 &value);
    void setParameter(quint64 id, quint64 value);
    [[nodiscard]] quint64 parameter(quint64 id);

    uvc_device_t *device = nullptr;
    uvc_device_handle_t *handle = nullptr;

private:
    void frameArrived(const uvc_frame_t *frame);

    uvc_context_t *m_context = nullptr;
    bool m_abandoned = false;
    std::mutex m_mutex; ///< guards m_frames
    std::condition_variable m_arrived;
    std::deque<QByteArray> m_frames;
};
