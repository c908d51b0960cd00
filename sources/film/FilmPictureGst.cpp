#include "sources/film/FilmPictureGst.h"

#include "sources/film/PlanarToRgb.h"

#include <QImage>

#include <gst/video/video.h>

namespace
{

/// The picture in packed RGB: the frame's own memory, or `converted` when the frame is planar.
QImage packed(const GstVideoFrame &frame, std::vector<uchar> &converted)
{
    const int width = GST_VIDEO_FRAME_WIDTH(&frame);
    const int height = GST_VIDEO_FRAME_HEIGHT(&frame);
    const auto row = [&frame](int plane, int line) {
        return static_cast<const uchar *>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane)) +
               static_cast<std::ptrdiff_t>(line) * GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane);
    };
    if (GST_VIDEO_FRAME_FORMAT(&frame) == GST_VIDEO_FORMAT_RGB)
        return {row(0, 0), width, height, GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0),
                QImage::Format_RGB888};

    const GstVideoColorimetry &colours = frame.info.colorimetry;
    double kr = 0.299;
    double kb = 0.114;
    gst_video_color_matrix_get_Kr_Kb(colours.matrix, &kr, &kb);
    const PlanarToRgb convert(kr, kb, colours.range == GST_VIDEO_COLOR_RANGE_0_255);
    const int stride = (width * 3 + 3) / 4 * 4;
    converted.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y)
        convert.row(row(0, y), row(1, y / 2), row(2, y / 2),
                    converted.data() + static_cast<std::ptrdiff_t>(y) * stride, width);
    return {converted.data(), width, height, stride, QImage::Format_RGB888};
}

} // namespace

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
