#pragma once

#include "BoundedWorker.h"

#include <QSize>
#include <QtGlobal>

#include <cstdint>
#include <functional>
#include <memory>

struct uvc_context;
struct uvc_device;
struct uvc_device_handle;

/// The camera on the bus: library context, device, handle and stream, each released in time.
///
/// One thread, the GUI's, calls it, and none of its calls can hang that thread: whatever touches
/// the bus runs on a worker and is waited for within a bound. A camera that has gone is latched: it
/// is left alone from then on, handle and context included, as closing them can abort the process.
///
/// Results are libuvc's codes, negative on failure.
class UvcCamera
{
public:
    struct Unreference {
        void operator()(uvc_device *device) const;
    };
    using Device = std::unique_ptr<uvc_device, Unreference>;

    /// `rgb`: packed 8-bit RGB, `width * height * 3` bytes, valid during the call only and free to
    /// be written. `microseconds`: captureMicroseconds() when the frame arrived. Frame thread.
    using FrameHandler = std::function<void(void *rgb, int width, int height, qint64 microseconds)>;

    UvcCamera();
    ~UvcCamera();
    UvcCamera(const UvcCamera &) = delete;
    UvcCamera &operator=(const UvcCamera &) = delete;

    /// The camera if the bus lists it now, else null.
    [[nodiscard]] Device find(int vendorId, int productId);

    /// Opens it; the library takes the interface over from a kernel driver.
    int open(Device device);

    /// Looks up the extension unit with that code, 16 bytes as they lie in the descriptor.
    void findExtensionUnit(const std::uint8_t (&code)[16]);

    /// Agrees on Motion-JPEG of that size with the camera for the next start.
    int negotiate(QSize size, int framesPerSecond);

    /// Streams until stopStreaming(). The handler gets each frame that can be decoded; frames whose
    /// own header gives another size than the stream's are dropped. Nothing is started without a
    /// handle or before the camera has agreed on a format.
    int startStreaming(QSize size, FrameHandler handler);

    /// When it returns no frame is in the handler and none will come, whatever the camera does.
    void silence();
    /// silence(), then ends the stream.
    void stopStreaming();
    [[nodiscard]] bool streaming() const;

    /// One control of the extension unit, `length` bytes: the bytes transferred. `data` is written
    /// by a successful read only.
    int setControl(std::uint8_t selector, const void *data, std::size_t length);
    int getControl(std::uint8_t selector, void *data, std::size_t length);

    /// Whether the camera is known to have left; asks the bus once more.
    bool gone();

private:
    class Stream;
    struct StreamControl;

    int transfer(bool read, std::uint8_t selector, void *data, std::size_t length);
    void noteResult(int result);

    BoundedWorker m_worker;
    uvc_context *m_context = nullptr;
    uvc_device_handle *m_handle = nullptr;
    std::uint8_t m_busNumber = 0;
    std::uint8_t m_deviceAddress = 0;
    std::uint8_t m_extensionUnit = 0;
    bool m_gone = false;
    std::shared_ptr<StreamControl> m_control;
    std::shared_ptr<Stream> m_stream;
};
