#pragma once

#include <QtGlobal>

#include <functional>
#include <gst/video/video.h>
#include <vector>

class QImage;

/// Whether pictures in these colours look wrong until they are converted to those of this screen.
[[nodiscard]] bool hasOtherColours(const GstVideoColorimetry &colours);

/// Calls `show` with the sample's picture as QImage::Format_RGB888, valid during the call. It wraps
/// the decoder's memory, or `converted`, which is reused from call to call.
[[nodiscard]] bool showSample(GstSample *sample, std::vector<uchar> &converted,
                              const std::function<void(const QImage &picture)> &show);
