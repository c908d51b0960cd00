#include "sources/camera/StreamNegotiation.h"

#include <libuvc/libuvc.h>

#include <algorithm>
#include <cstring>
#include <iterator>

using namespace StreamFormats;

namespace
{

constexpr std::uint32_t SECOND = 10'000'000; ///< in the units of a frame interval

struct Format {
    Coding coding;
    uvc_frame_format library;
    /// The first four bytes of its GUID.
    const char *name;
};
constexpr Format FORMATS[] = {
    {Coding::MotionJpeg, UVC_FRAME_FORMAT_MJPEG, nullptr},
    {Coding::Yuyv, UVC_FRAME_FORMAT_YUYV, "YUY2"},
    {Coding::Uyvy, UVC_FRAME_FORMAT_UYVY, "UYVY"},
    {Coding::Grey, UVC_FRAME_FORMAT_GRAY8, "Y800"},
};
constexpr std::size_t NAME_SIZE = 4;

const Format *formatOf(const uvc_format_desc_t &format)
{
    const bool jpeg = format.bDescriptorSubtype == UVC_VS_FORMAT_MJPEG;
    if (!jpeg && format.bDescriptorSubtype != UVC_VS_FORMAT_UNCOMPRESSED)
        return nullptr;
    const auto found = std::find_if(std::begin(FORMATS), std::end(FORMATS), [&](const Format &row) {
        return row.name ? !jpeg && std::memcmp(row.name, format.guidFormat, NAME_SIZE) == 0 : jpeg;
    });
    return found == std::end(FORMATS) ? nullptr : found;
}

Offer offerOf(Coding coding, const uvc_format_desc_t &format, const uvc_frame_desc_t &frame)
{
    Offer offer;
    offer.coding = coding;
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

/// The library divides by the step, also by 0, and refuses rates that it cannot count in whole
/// pictures. Only its search for the indices looks at the range.
void openRange(uvc_frame_desc_t &frame)
{
    if (frame.intervals)
        return;
    frame.dwMinFrameInterval = 0;
    frame.dwMaxFrameInterval = 0xFFFFFFFF;
    frame.dwFrameIntervalStep = 1;
}

bool agrees(const struct uvc_stream_ctrl &block, const Choice &choice)
{
    return block.bFormatIndex == choice.formatIndex && block.bFrameIndex == choice.frameIndex;
}

} // namespace

std::vector<Offer> takeOffers(uvc_device_handle *handle)
{
    std::vector<Offer> offers;
    for (const uvc_format_desc_t *format = uvc_get_format_descs(handle); format;
         format = format->next) {
        const Format *known = formatOf(*format);
        for (uvc_frame_desc_t *frame = format->frame_descs; known && frame; frame = frame->next) {
            offers.push_back(offerOf(known->coding, *format, *frame));
            openRange(*frame);
        }
    }
    return offers;
}

int negotiateStream(uvc_device_handle *handle, const Choice &choice, struct uvc_stream_ctrl &block)
{
    // The library counts whole pictures a second and knows 29.97 as 29, and divides by the number.
    const int framesPerSecond = std::max(1, static_cast<int>(SECOND / choice.interval));
    const int found = uvc_get_stream_ctrl_format_size(
        handle, &block, FORMATS[static_cast<std::size_t>(choice.coding)].library,
        choice.size.width(), choice.size.height(), framesPerSecond);
    if (found < 0)
        return found;
    if (!agrees(block, choice) || block.dwFrameInterval != choice.interval) {
        // The library has chosen another of the rates that it counts as the same.
        block.bFormatIndex = choice.formatIndex;
        block.bFrameIndex = choice.frameIndex;
        block.dwFrameInterval = choice.interval;
        if (const int agreed = uvc_probe_stream_ctrl(handle, &block); agreed < 0)
            return agreed;
    }
    return agrees(block, choice) ? UVC_SUCCESS : UVC_ERROR_INVALID_MODE;
}
