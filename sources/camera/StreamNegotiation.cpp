#include "sources/camera/StreamNegotiation.h"

#include "sources/camera/StreamFormats.h"

#include <libuvc/libuvc.h>

using namespace StreamFormats;

namespace
{

constexpr std::uint32_t SECOND = 10'000'000; ///< in the units of a frame interval

Offer offerOf(const uvc_format_desc_t &format, const uvc_frame_desc_t &frame)
{
    Offer offer;
    offer.formatIndex = format.bFormatIndex;
    offer.frameIndex = frame.bFrameIndex;
    offer.size = QSize(frame.wWidth, frame.wHeight);
    // The library ends the list with a zero, and keeps none for a range.
    for (const std::uint32_t *interval = frame.intervals; interval && *interval; ++interval)
        offer.intervals.push_back(*interval);
    offer.shortest = frame.dwMinFrameInterval;
    offer.longest = frame.dwMaxFrameInterval;
    offer.step = frame.dwFrameIntervalStep;
    return offer;
}

/// What UvcStream can decode; parsed when the camera was opened, nothing crosses the bus.
std::vector<Offer> offersOf(uvc_device_handle_t *handle)
{
    std::vector<Offer> offers;
    for (const uvc_format_desc_t *format = uvc_get_format_descs(handle); format;
         format = format->next) {
        if (format->bDescriptorSubtype != UVC_VS_FORMAT_MJPEG)
            continue;
        for (const uvc_frame_desc_t *frame = format->frame_descs; frame; frame = frame->next)
            offers.push_back(offerOf(*format, *frame));
    }
    return offers;
}

} // namespace

int negotiateStream(uvc_device_handle *handle, QSize size, int framesPerSecond,
                    struct uvc_stream_ctrl &block)
{
    const auto choice = choose(offersOf(handle), size, framesPerSecond, Sizes::Exact);
    if (!choice)
        return UVC_ERROR_INVALID_MODE;
    // The library counts whole pictures a second and knows 29.97 as 29.
    const int agreed =
        uvc_get_stream_ctrl_format_size(handle, &block, UVC_FRAME_FORMAT_MJPEG, size.width(),
                                        size.height(), static_cast<int>(SECOND / choice->interval));
    if (agreed < 0 ||
        (block.bFormatIndex == choice->formatIndex && block.bFrameIndex == choice->frameIndex &&
         block.dwFrameInterval == choice->interval))
        return agreed;
    // The library has chosen another of the rates that it counts as the same.
    block.bFormatIndex = choice->formatIndex;
    block.bFrameIndex = choice->frameIndex;
    block.dwFrameInterval = choice->interval;
    return uvc_probe_stream_ctrl(handle, &block);
}
