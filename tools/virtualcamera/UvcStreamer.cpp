#include "tools/virtualcamera/UvcStreamer.h"

#include "tools/virtualcamera/JpegMarkers.h"
#include "tools/virtualcamera/SheetPicture.h"
#include "tools/virtualcamera/TileEncoder.h"
#include "tools/virtualcamera/UncompressedFrame.h"

#include <algorithm>
#include <pthread.h>
#include <utility>

using namespace JpegMarkers;

namespace
{

constexpr int LATE_PERIODS = 4; ///< later than that the clockwork starts again

std::vector<std::uint8_t>::iterator findMarker(std::vector<std::uint8_t> &jpeg, std::uint8_t code)
{
    const std::uint8_t marker[] = {MARKER, code};
    return std::search(jpeg.begin(), jpeg.end(), std::begin(marker), std::end(marker));
}

/// Lets the header claim another height than the data have.
void setHeight(std::vector<std::uint8_t> &jpeg, int height)
{
    const auto frame = findMarker(jpeg, START_OF_FRAME);
    if (jpeg.end() - frame < 7)
        return;
    frame[5] = static_cast<std::uint8_t>(height >> 8);
    frame[6] = static_cast<std::uint8_t>(height & 0xFF);
}

/// Makes the first Huffman table claim more codes than there can be.
void damageTables(std::vector<std::uint8_t> &jpeg)
{
    const auto tables = findMarker(jpeg, HUFFMAN_TABLES);
    if (jpeg.end() - tables > 32)
        std::fill(tables + 5, tables + 21, std::uint8_t{0xEE});
}

} // namespace

UvcStreamer::UvcStreamer(Settings settings, UsbFs &usbFs, ExtensionUnit &extensionUnit,
                         CameraFaults &faults)
    : m_settings(std::move(settings))
    , m_usbFs(usbFs)
    , m_extensionUnit(extensionUnit)
    , m_faults(faults)
    , m_thread([this] { run(); })
{
    pthread_setname_np(m_thread.native_handle(), "camera-stream");
}

UvcStreamer::~UvcStreamer()
{
    m_usbFs.shutDown();
    m_thread.join();
}

void UvcStreamer::report(CameraStatistics &statistics) const
{
    statistics.framesSent = m_framesSent;
    statistics.framesOverrun = m_framesOverrun;
    statistics.bytesSent = m_bytesSent;
    statistics.lastFrame = m_lastFrame;
}

void UvcStreamer::run()
{
    const auto period = std::chrono::nanoseconds(1000000000 / m_settings.framesPerSecond);
    auto due = UsbFs::Clock::now();
    while (const auto stream = m_usbFs.waitForStream()) {
        const bool begun = setForm(QSize(stream->size.width, stream->size.height), stream->coding);
        if (begun || due + LATE_PERIODS * period < UsbFs::Clock::now())
            due = UsbFs::Clock::now();
        if (!m_usbFs.sleepUntil(due))
            return;
        due += period;
        if (!m_faults.silent)
            sendFrame(*stream);
    }
}

bool UvcStreamer::setForm(QSize size, UsbDescriptors::StreamCoding coding)
{
    if (m_size == size && m_coding == coding)
        return false;
    m_size = size;
    m_coding = coding;
    m_picture = std::make_unique<SheetPicture>(size, m_settings.banner);
    m_encoder.reset();
    if (coding == UsbDescriptors::StreamCoding::MotionJpeg)
        m_encoder = std::make_unique<TileEncoder>(size, m_settings.jpegQuality);
    // The first picture is encoded whole. It takes so long that those behind it would come at once.
    (void)encode();
    return true;
}

void UvcStreamer::sendFrame(const UsbFs::Stream &stream)
{
    Bytes frame = spoil(encode());
    const std::size_t size = frame.size();
    const std::uint32_t number = m_frameNumber++;
    if (takeFault(m_faults.dropFrames))
        return;
    switch (m_usbFs.send(stream, packets(std::move(frame)))) {
    case UsbFs::Sent::Queued:
        ++m_framesSent;
        m_bytesSent += size;
        m_lastFrame = number;
        break;
    case UsbFs::Sent::Overrun:
        ++m_framesOverrun;
        break;
    case UsbFs::Sent::Ended:
        break;
    }
}

UvcStreamer::Bytes UvcStreamer::encode()
{
    const std::vector<QRect> areas = m_picture->draw(m_frameNumber, m_extensionUnit.view());
    if (!m_encoder)
        return UncompressedFrame::encode(m_picture->image(), m_coding);
    for (const QRect &area : areas)
        m_encoder->update(m_picture->image(), area);
    return m_encoder->frame();
}

UvcStreamer::Bytes UvcStreamer::spoil(Bytes frame)
{
    if (m_encoder)
        frame = spoilJpeg(std::move(frame));
    if (takeFault(m_faults.truncateFrames))
        frame.resize(frame.size() / 2);
    return frame;
}

UvcStreamer::Bytes UvcStreamer::spoilJpeg(Bytes jpeg)
{
    if (takeFault(m_faults.emptyFrames))
        return {MARKER, START_OF_IMAGE, MARKER, END_OF_IMAGE};
    if (takeFault(m_faults.wrongSizeFrames))
        setHeight(jpeg, m_size.height() * 2);
    if (takeFault(m_faults.smallSizeFrames))
        setHeight(jpeg, m_size.height() / 2);
    if (takeFault(m_faults.corruptFrames))
        damageTables(jpeg);
    return jpeg;
}

std::vector<Payload> UvcStreamer::packets(Bytes frame)
{
    const std::size_t room =
        (m_settings.isochronous ? UsbDescriptors::ISOCHRONOUS_PACKET : m_settings.maximumPayload) -
        Payload::HEADER_SIZE;
    const auto ticks = UsbFs::Clock::now().time_since_epoch() /
                       std::chrono::nanoseconds(1000000000 / UsbDescriptors::CLOCK_FREQUENCY);
    Payload packet;
    packet.frame = std::make_shared<const Bytes>(std::move(frame));
    packet.frameNumber = m_frameNumber - 1;
    packet.clock = static_cast<std::uint32_t>(ticks);
    m_frameId = !m_frameId;
    const std::uint8_t error =
        takeFault(m_faults.errorBitFrames) ? Payload::ERROR_BIT : std::uint8_t{0};
    std::vector<Payload> all;
    for (std::size_t size = packet.frame->size(); packet.offset < size; packet.offset += room) {
        packet.length = std::min(room, size - packet.offset);
        const bool last = packet.offset + packet.length == size;
        packet.flags = static_cast<std::uint8_t>(Payload::END_OF_HEADER | Payload::HAS_TIMES |
                                                 error | (m_frameId ? Payload::FRAME_ID : 0) |
                                                 (last ? Payload::END_OF_FRAME : 0));
        all.push_back(packet);
    }
    return all;
}
