#include "canvas/picture/FrameSteps.h"

#include "canvas/picture/Frame.h"
#include "canvas/picture/FrameKernels.h"
#include "canvas/picture/Overlay.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <vector>

namespace
{

constexpr int BLOCK = 8;

void keepFourth(const uchar *source, uchar *destination, int pixelBytes)
{
    if (pixelBytes == 4)
        destination[3] = source[3];
}

/// One block of the mosaic; `width` and `height` are its own.
void averageBlock(const ConstPixelRows &source, const PixelRows &destination)
{
    std::array<unsigned, 3> sums{};
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x) {
            for (std::size_t i = 0; i < 3; ++i)
                sums[i] += source.pixel(x, y)[i];
        }
    }
    const auto count = static_cast<unsigned>(source.width * source.height);
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x) {
            uchar *out = destination.pixel(x, y);
            keepFourth(source.pixel(x, y), out, source.pixelBytes);
            for (std::size_t i = 0; i < 3; ++i)
                out[i] = static_cast<uchar>(sums[i] / count);
        }
    }
}

/// Blackens the pixels from `from` up to but not including `to`.
void blacken(const PixelRows &picture, int y, int from, int to)
{
    if (from >= to)
        return;
    if (picture.pixelBytes == 3) {
        std::memset(picture.pixel(from, y), 0, static_cast<std::size_t>(to - from) * 3);
        return;
    }
    for (int x = from; x < to; ++x)
        std::memset(picture.pixel(x, y), 0, 3);
}

void maskCircle(const PixelRows &picture)
{
    const int centreX = picture.width / 2;
    const int centreY = picture.height / 2;
    const auto radius = static_cast<std::int64_t>(std::min(picture.width, picture.height) * 0.48);
    // Half the visible span of a row; it changes little from one row to the next.
    std::int64_t half = 0;
    for (int y = 0; y < picture.height; ++y) {
        const std::int64_t dy = y - centreY;
        const std::int64_t room = radius * radius - dy * dy;
        if (room < 0) {
            blacken(picture, y, 0, picture.width);
            continue;
        }
        while (half * half > room)
            --half;
        while ((half + 1) * (half + 1) <= room)
            ++half;
        const int span = static_cast<int>(half);
        blacken(picture, y, 0, std::min(centreX - span, picture.width));
        blacken(picture, y, std::max(centreX + span + 1, 0), picture.width);
    }
}

void maskRectangle(const PixelRows &picture)
{
    const int centreX = picture.width / 2;
    const int centreY = picture.height / 2;
    const int halfWidth = static_cast<int>(picture.width * 0.3);
    const int halfHeight = static_cast<int>(picture.height * 0.3);
    for (int y = 0; y < picture.height; ++y) {
        if (std::abs(y - centreY) > halfHeight) {
            blacken(picture, y, 0, picture.width);
            continue;
        }
        blacken(picture, y, 0, centreX - halfWidth);
        blacken(picture, y, centreX + halfWidth + 1, picture.width);
    }
}

/// Source over an opaque destination of 4 bytes in the painter's arithmetic, which goes through
/// 16 bits a channel when the destination's format is not premultiplied.
void blendArgb(const std::uint32_t *layer, uchar *out, int width)
{
    for (int x = 0; x < width; ++x, out += 4) {
        if (layer[x] == 0)
            continue;
        const std::uint32_t rest = 65535U - (layer[x] >> 24) * 257U;
        for (int channel = 0; channel < 3; ++channel) {
            const std::uint32_t source = (layer[x] >> (8 * channel) & 0xffU) * 257U;
            const std::uint32_t under = out[channel] * 257U;
            const std::uint64_t product = std::uint64_t{under} * rest;
            const auto below =
                static_cast<std::uint32_t>((product + (product >> 16) + 0x8000U) >> 16);
            const std::uint32_t sum = source + below + 128U;
            out[channel] = static_cast<uchar>((sum - (sum >> 8)) >> 8);
        }
    }
}

/// A row of blocks of 3-byte pixels: the sums of its columns, then one row of averages that is
/// written as often as the blocks are high.
void mosaicBand(const ConstPixelRows &source, const PixelRows &destination,
                std::vector<std::uint16_t> &sums)
{
    const std::size_t bytes = source.rowBytes();
    FrameKernels::current().sumRows(source.data, source.stride, source.height, sums.data(), bytes);
    uchar *out = destination.data;
    for (int x = 0; x < source.width; x += BLOCK) {
        const int width = std::min(BLOCK, source.width - x);
        const std::uint16_t *columns = sums.data() + std::ptrdiff_t{3} * x;
        std::array<unsigned, 3> total{};
        for (int i = 0; i < width; ++i) {
            for (std::size_t channel = 0; channel < 3; ++channel)
                total[channel] += columns[3 * i + static_cast<int>(channel)];
        }
        const auto count = static_cast<unsigned>(width * source.height);
        for (unsigned &channel : total)
            channel = count == BLOCK * BLOCK ? channel / (BLOCK * BLOCK) : channel / count;
        for (int i = 0; i < width; ++i) {
            for (const unsigned channel : total)
                *out++ = static_cast<uchar>(channel);
        }
    }
    for (int y = 1; y < source.height; ++y)
        std::memcpy(destination.row(y), destination.data, bytes);
}

} // namespace

void FrameSteps::copy(const ConstPixelRows &source, const PixelRows &destination)
{
    for (int y = 0; y < source.height; ++y)
        std::memcpy(destination.row(y), source.row(y), source.rowBytes());
}

void FrameSteps::makeOpaque(void *data, QSize size)
{
    const auto pixels =
        static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
    auto *bytes = static_cast<uchar *>(data);
    for (std::size_t i = 0; i < pixels; ++i)
        bytes[4 * i + 3] = 255;
}

void FrameSteps::mirrorInPlace(const PixelRows &picture)
{
    for (int y = 0; y < picture.height / 2; ++y)
        std::swap_ranges(picture.row(y), picture.row(y) + picture.stride,
                         picture.row(picture.height - 1 - y));
}

void FrameSteps::copyOut(const Frame &frame, void *data, bool mirror, bool rgb32)
{
    const ConstPixelRows rows = frame.rows();
    const int wantedBytes = rgb32 ? 4 : 3;
    const auto bytes = static_cast<std::size_t>(rows.width) *
                       static_cast<std::size_t>(rows.height) *
                       static_cast<std::size_t>(wantedBytes);
    if (rows.pixelBytes == wantedBytes && !mirror) {
        std::memcpy(data, rows.data, bytes);
        if (rgb32)
            makeOpaque(data, rows.size());
        return;
    }
    const QImage image(rows.data, rows.width, rows.height, static_cast<int>(rows.stride),
                       frame.format());
    const QImage wanted =
        image.convertToFormat(rgb32 ? QImage::Format_RGB32 : QImage::Format_RGB888)
            .mirrored(false, mirror);
    std::memcpy(data, wanted.constBits(), bytes);
}

void FrameSteps::layOver(const Overlay &layer, const QRect &part, const PixelRows &destination)
{
    const QImage &image = layer.image();
    if (image.isNull())
        return;
    const FrameKernels &kernels = FrameKernels::current();
    const auto blendPart = [&](const QRect &touched) {
        for (int y = touched.top(); y <= touched.bottom(); ++y) {
            const auto *line = reinterpret_cast<const std::uint32_t *>(image.constScanLine(y));
            uchar *out = destination.pixel(touched.left() - part.left(), y - part.top());
            if (destination.pixelBytes == 3)
                kernels.blend(line + touched.left(), out,
                              static_cast<std::size_t>(touched.width()));
            else
                blendArgb(line + touched.left(), out, touched.width());
        }
    };
    // By reference, as a copy of its captures would be allocated for each frame.
    layer.forEachTouched(part, std::cref(blendPart));
}

void FrameSteps::grey(const ConstPixelRows &source, const PixelRows &destination)
{
    const FrameKernels &kernels = FrameKernels::current();
    for (int y = 0; y < source.height; ++y) {
        const uchar *in = source.row(y);
        uchar *out = destination.row(y);
        if (source.pixelBytes == 3) {
            kernels.grey(in, out, static_cast<std::size_t>(source.width));
            continue;
        }
        for (int x = 0; x < source.width; ++x, in += 4, out += 4) {
            std::array<uchar, 3> value{};
            FrameKernels::portable().grey(in, value.data(), 1);
            keepFourth(in, out, 4);
            std::memcpy(out, value.data(), 3);
        }
    }
}

void FrameSteps::negative(const ConstPixelRows &source, const PixelRows &destination)
{
    const FrameKernels &kernels = FrameKernels::current();
    for (int y = 0; y < source.height; ++y) {
        const uchar *in = source.row(y);
        uchar *out = destination.row(y);
        if (source.pixelBytes == 3) {
            kernels.invert(in, out, source.rowBytes());
            continue;
        }
        for (std::size_t i = 0; i < source.rowBytes(); ++i)
            out[i] = static_cast<uchar>(i % 4 == 3 ? in[i] : ~in[i]);
    }
}

void FrameSteps::mosaic(const ConstPixelRows &source, const PixelRows &destination)
{
    // Kept from frame to frame; a row of sums is small.
    thread_local std::vector<std::uint16_t> sums;
    if (sums.size() < source.rowBytes())
        sums.resize(source.rowBytes());
    for (int y = 0; y < source.height; y += BLOCK) {
        const int height = std::min(BLOCK, source.height - y);
        const QRect band(0, y, source.width, height);
        if (source.pixelBytes == 3) {
            mosaicBand(source.part(band), destination.part(band), sums);
            continue;
        }
        for (int x = 0; x < source.width; x += BLOCK) {
            const QRect block(x, y, std::min(BLOCK, source.width - x), height);
            averageBlock(source.part(block), destination.part(block));
        }
    }
}

void FrameSteps::mask(CanvasModes::MaskMode mode, const PixelRows &picture)
{
    switch (mode) {
    case CanvasModes::MaskNone:
        break;
    case CanvasModes::MaskCircle:
        maskCircle(picture);
        break;
    case CanvasModes::MaskRectangle:
        maskRectangle(picture);
        break;
    case CanvasModes::MaskLeft:
        fillBlack(picture.part({0, 0, picture.width / 2, picture.height}));
        break;
    case CanvasModes::MaskTop:
        fillBlack(picture.part({0, 0, picture.width, picture.height / 2}));
        break;
    }
}

void FrameSteps::fillBlack(const PixelRows &picture)
{
    constexpr std::uint32_t opaqueBlack = 0xff000000U;
    const bool inOneBlock = picture.pixelBytes == 3 &&
                            picture.stride == static_cast<std::ptrdiff_t>(picture.rowBytes());
    if (inOneBlock) {
        std::memset(picture.data, 0, picture.rowBytes() * static_cast<std::size_t>(picture.height));
        return;
    }
    for (int y = 0; y < picture.height; ++y) {
        uchar *out = picture.row(y);
        if (picture.pixelBytes == 3) {
            std::memset(out, 0, picture.rowBytes());
            continue;
        }
        for (int x = 0; x < picture.width; ++x)
            std::memcpy(out + std::ptrdiff_t{4} * x, &opaqueBlack, 4);
    }
}
