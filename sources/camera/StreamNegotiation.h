#pragma once

#include <QSize>

struct uvc_device_handle;
struct uvc_stream_ctrl;

/// Agrees with the camera on Motion-JPEG of that size: at the wanted rate, else the next above,
/// else the fastest there is. `block` is what uvc_start_streaming() takes, with the interval as the
/// camera lists it. libuvc's result, UVC_ERROR_INVALID_MODE when the camera has no such size. Waits
/// for the camera without end.
[[nodiscard]] int negotiateStream(uvc_device_handle *handle, QSize size, int framesPerSecond,
                                  struct uvc_stream_ctrl &block);
