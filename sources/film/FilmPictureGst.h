#pragma once

#include <QtGlobal>

#include <functional>
#include <gst/gst.h>
#include <vector>

class QImage;

/// Calls `show` with the sample's picture as QImage::Format_RGB888, valid during the call. It wraps
/// the decoder's memory, or `converted`, which is reused from call to call.
[[nodiscard]] bool showSample(GstSample *sample, std::vector<uchar> &converted,
                              const std::function<void(const QImage &picture)> &show);
