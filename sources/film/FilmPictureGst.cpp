#include "sources/film/FilmPictureGst.h"

#include "sources/film/DisplayColours.h"
#include "sources/film/PlanarToRgb.h"

#include <QImage>

#include <algorithm>
#include <gst/video/video.h>

namespace
{

DisplayColours::Primaries primariesOf(const GstVideoColorimetry &colours)
{
    switch (colours.primaries) {
    case GST_VIDEO_COLOR_PRIMARIES_BT2020:
        return DisplayColours::Primaries::Bt2020;
    case GST_VIDEO_COLOR_PRIMARIES_BT470BG:
        return DisplayColours::Primaries::Bt601Lines625;
    case GST_VIDEO_COLOR_PRIMARIES_SMPTE170M:
    case GST_VIDEO_COLOR_PRIMARIES_SMPTE240M:
        return DisplayColours::Primaries::Bt601Lines525;
    default:
        return DisplayColours::Primaries::Bt709;
    }
}

DisplayColours::Transfer transferOf(const GstVideoColorimetry &colours)
{
    if (colours.transfer == GST_VIDEO_TRANSFER_SMPTE2084)
        return DisplayColours::Transfer::Pq;
    return colours.transfer == GST_VIDEO_TRANSFER_ARIB_STD_B67 ? DisplayColours::Transfer::Hlg
                                                               : DisplayColours::Transfer::Usual;
}

bool isDeep(const GstVideoFrame &frame)
{
    return GST_VIDEO_FRAME_COMP_DEPTH(&frame, 0) > 8;
}

PlanarToRgb conversionFor(const GstVideoColorimetry &colours)
{
    double kr = 0.299;
    double kb = 0.114;
    gst_video_color_matrix_get_Kr_Kb(colours.matrix, &kr, &kb);
    return {kr, kb, colours.range == GST_VIDEO_COLOR_RANGE_0_255};
}

/// Fills rows of `stride` bytes with a frame of 10 bits a sample, in this screen's colours.
void unpackDeep(const GstVideoFrame &frame, const DisplayColours &display, uchar *rgb, int stride)
{
    const int width = GST_VIDEO_FRAME_WIDTH(&frame);
    const bool halved = GST_VIDEO_FRAME_FORMAT(&frame) == GST_VIDEO_FORMAT_I420_10LE;
    const auto row = [&frame](int plane, int line) {
        return reinterpret_cast<const std::uint16_t *>(
            static_cast<const uchar *>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane)) +
            static_cast<std::ptrdiff_t>(line) * GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane));
    };
    const PlanarToRgb convert = conversionFor(frame.info.colorimetry);
    std::vector<std::uint16_t> sixteenths(3 * static_cast<std::size_t>(width));
    for (int y = 0; y < GST_VIDEO_FRAME_HEIGHT(&frame); ++y, rgb += stride) {
        const int line = halved ? y / 2 : y;
        convert.deepRow(row(0, y), row(1, line), row(2, line), sixteenths.data(), width, halved);
        display.row(sixteenths.data(), rgb, width);
    }
}

/// Fills rows of `stride` bytes with the frame in packed RGB.
void unpack(const GstVideoFrame &frame, uchar *rgb, int stride)
{
    const int width = GST_VIDEO_FRAME_WIDTH(&frame);
    const auto row = [&frame](int plane, int line) {
        return static_cast<const uchar *>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane)) +
               static_cast<std::ptrdiff_t>(line) * GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane);
    };
    const GstVideoFormat format = GST_VIDEO_FRAME_FORMAT(&frame);
    const PlanarToRgb convert = conversionFor(frame.info.colorimetry);
    for (int y = 0; y < GST_VIDEO_FRAME_HEIGHT(&frame); ++y, rgb += stride) {
        if (format == GST_VIDEO_FORMAT_RGB)
            std::copy_n(row(0, y), 3 * width, rgb);
        else if (format == GST_VIDEO_FORMAT_Y444)
            convert.rowOfFullColour(row(0, y), row(1, y), row(2, y), rgb, width);
        else
            convert.row(row(0, y), row(1, y / 2), row(2, y / 2), rgb, width);
    }
}

/// The picture in packed RGB: the frame's own memory, or `converted`.
QImage packed(const GstVideoFrame &frame, std::vector<uchar> &converted)
{
    const int width = GST_VIDEO_FRAME_WIDTH(&frame);
    const int height = GST_VIDEO_FRAME_HEIGHT(&frame);
    const DisplayColours display(primariesOf(frame.info.colorimetry),
                                 transferOf(frame.info.colorimetry));
    if (GST_VIDEO_FRAME_FORMAT(&frame) == GST_VIDEO_FORMAT_RGB && display.changesNothing())
        return {static_cast<const uchar *>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)), width, height,
                GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0), QImage::Format_RGB888};
    const int stride = (width * 3 + 3) / 4 * 4;
    converted.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
    if (isDeep(frame)) {
        unpackDeep(frame, display, converted.data(), stride);
        return {converted.data(), width, height, stride, QImage::Format_RGB888};
    }
    unpack(frame, converted.data(), stride);
    for (int y = 0; y < height && !display.changesNothing(); ++y)
        display.row(converted.data() + static_cast<std::ptrdiff_t>(y) * stride, width);
    return {converted.data(), width, height, stride, QImage::Format_RGB888};
}

} // namespace

bool hasOtherColours(const GstVideoColorimetry &colours)
{
    return !DisplayColours(primariesOf(colours), transferOf(colours)).changesNothing();
}

bool showSample(GstSample *sample, std::vector<uchar> &converted,
                const std::function<void(const QImage &picture)> &show)
{
    GstVideoInfo info;
    GstVideoFrame frame;
    if (!gst_video_info_from_caps(&info, gst_sample_get_caps(sample)) ||
        !gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ))
        return false;
    show(packed(frame, converted));
    gst_video_frame_unmap(&frame);
    return true;
}
