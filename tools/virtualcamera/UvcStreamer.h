#pragma once

#include "tools/virtualcamera/CameraStatistics.h"
#include "tools/virtualcamera/UsbFs.h"

#include <QSize>
#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

class SheetPicture;
class TileEncoder;

/// The camera's own timing: while a stream runs it draws, encodes and sends a frame per period on a
/// thread of its own, from construction to destruction.
class UvcStreamer
{
public:
    struct Settings {
        bool isochronous = false;
        std::uint32_t maximumPayload = 0; ///< bytes of a bulk payload with its header
        int framesPerSecond = 30;
        int jpegQuality = 85;
        QString banner;
    };

    UvcStreamer(Settings settings, UsbFs &usbFs, ExtensionUnit &extensionUnit,
                CameraFaults &faults);
    ~UvcStreamer();
    UvcStreamer(const UvcStreamer &) = delete;
    UvcStreamer &operator=(const UvcStreamer &) = delete;

    /// Adds the counts of frames; any thread.
    void report(CameraStatistics &statistics) const;

private:
    using Bytes = std::vector<std::uint8_t>;

    void run();
    /// Whether the size or the coding has changed.
    bool setForm(QSize size, UsbDescriptors::StreamCoding coding);
    void sendFrame(const UsbFs::Stream &stream);
    [[nodiscard]] Bytes encode();
    [[nodiscard]] Bytes spoil(Bytes frame);
    [[nodiscard]] Bytes spoilJpeg(Bytes jpeg);
    [[nodiscard]] std::vector<Payload> packets(Bytes frame);

    const Settings m_settings;
    UsbFs &m_usbFs;
    ExtensionUnit &m_extensionUnit;
    CameraFaults &m_faults;

    // The streamer's thread alone:
    QSize m_size;
    UsbDescriptors::StreamCoding m_coding = UsbDescriptors::StreamCoding::MotionJpeg;
    std::unique_ptr<SheetPicture> m_picture;
    std::unique_ptr<TileEncoder> m_encoder; ///< for Motion-JPEG
    std::uint32_t m_frameNumber = 0;
    bool m_frameId = false;

    std::atomic<std::uint64_t> m_framesSent{0};
    std::atomic<std::uint64_t> m_framesOverrun{0};
    std::atomic<std::uint64_t> m_bytesSent{0};
    std::atomic<std::uint32_t> m_lastFrame{0};
    std::thread m_thread; ///< last, so that all above is there when it starts
};
