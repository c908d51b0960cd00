#pragma once

#include <QSize>

#include <cstddef>

/// The picture size in pixels that a JPEG's header announces, read with the library that decodes
/// it, so that both always agree on it. An empty size when there is no readable header.
[[nodiscard]] QSize jpegFrameSize(const void *data, std::size_t length);
