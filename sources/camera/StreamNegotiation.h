#pragma once

#include "sources/camera/StreamFormats.h"

#include <vector>

struct uvc_device_handle;
struct uvc_stream_ctrl;

/// What the open camera offers of what UvcStream can decode, parsed when it was opened; nothing
/// crosses the bus. To be called once for an opening: it changes the library's own list where the
/// library could not work with it.
[[nodiscard]] std::vector<StreamFormats::Offer> takeOffers(uvc_device_handle *handle);

/// Agrees with the camera on that. `block` is what uvc_start_streaming() takes, with the interval
/// as the camera lists it. libuvc's result, UVC_ERROR_INVALID_MODE when the camera answers with
/// another size or format. Waits for the camera without end.
[[nodiscard]] int negotiateStream(uvc_device_handle *handle, const StreamFormats::Choice &choice,
                                  struct uvc_stream_ctrl &block);
