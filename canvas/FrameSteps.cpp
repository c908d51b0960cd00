#include "FrameSteps.h"

#include "AnnotationLayer.h"
#include "Frame.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace
{

constexpr int BLOCK = 8;

/// The three products of the grey formula for every byte.
struct GreyTables {
    std::array<double, 256> first{};
    std::array<double, 256> second{};
    std::array<double, 256> third{};

    GreyTables()
    {
        for (std::size_t i = 0; i < 256; ++i) {
            first[i] = static_cast<double>(i) * 0.2989;
            second[i] = static_cast<double>(i) * 0.587;
            third[i] = static_cast<double>(i) * 0.114;
        }
    }
};

uchar greyOf(const uchar *pixel)
{
    static const GreyTables tables;
    return static_cast<uchar>(tables.third[pixel[2]] +
                              (tables.second[pixel[1]] + tables.first[pixel[0]]));
}

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
    // Half the open span of a row; it only changes little from one row to the next.
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

/// Source over destination, both with 8 bits, the destination opaque: the painter's arithmetic.
std::uint32_t over(std::uint32_t source, std::uint32_t below)
{
    const std::uint32_t rest = 255U - (source >> 24);
    const auto scaled = [rest](std::uint32_t channels) {
        const std::uint32_t product = channels * rest;
        return product + ((product >> 8) & 0xff00ffU) + 0x800080U;
    };
    const std::uint32_t redBlue = (scaled(below & 0xff00ffU) >> 8) & 0xff00ffU;
    const std::uint32_t green = scaled((below >> 8) & 0xffU) & 0xff00U;
    return source + (redBlue | green);
}

void blendRow(const std::uint32_t *layer, uchar *out, int width, int pixelBytes)
{
    const int red = pixelBytes == 3 ? 0 : 2;
    const int blue = 2 - red;
    for (int x = 0; x < width; ++x, out += pixelBytes) {
        const std::uint32_t source = layer[x];
        if (source == 0)
            continue;
        const auto below = static_cast<std::uint32_t>(out[red] << 16 | out[1] << 8 | out[blue]);
        const std::uint32_t mixed = over(source, below);
        out[red] = static_cast<uchar>(mixed >> 16);
        out[1] = static_cast<uchar>(mixed >> 8);
        out[blue] = static_cast<uchar>(mixed);
    }
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

void FrameSteps::turn(const ConstPixelRows &source, int quarterTurns, const QRect &part,
                      const PixelRows &destination)
{
    const auto bytes = static_cast<std::size_t>(source.pixelBytes);
    // Where the destination's first pixel lies, and the way along its rows and columns.
    const std::ptrdiff_t right = source.pixelBytes;
    const std::ptrdiff_t down = source.stride;
    const uchar *start = source.data;
    std::ptrdiff_t alongX = right;
    std::ptrdiff_t alongY = down;
    if (quarterTurns == 1) {
        start = source.pixel(0, source.height - 1);
        alongX = -down;
        alongY = right;
    } else if (quarterTurns == 2) {
        start = source.pixel(source.width - 1, source.height - 1);
        alongX = -right;
        alongY = -down;
    } else if (quarterTurns == 3) {
        start = source.pixel(source.width - 1, 0);
        alongX = down;
        alongY = -right;
    }
    for (int y = 0; y < part.height(); ++y) {
        const uchar *in = start + (part.y() + y) * alongY + part.x() * alongX;
        uchar *out = destination.row(y);
        for (int x = 0; x < part.width(); ++x, in += alongX, out += bytes)
            std::memcpy(out, in, bytes);
    }
}

void FrameSteps::layOver(const AnnotationLayer &layer, const QRect &part,
                         const PixelRows &destination)
{
    const QImage &image = layer.image();
    if (image.isNull())
        return;
    layer.forEachTouched(part, [&](const QRect &touched) {
        for (int y = touched.top(); y <= touched.bottom(); ++y) {
            const auto *line = reinterpret_cast<const std::uint32_t *>(image.constScanLine(y));
            blendRow(line + touched.left(),
                     destination.pixel(touched.left() - part.left(), y - part.top()),
                     touched.width(), destination.pixelBytes);
        }
    });
}

void FrameSteps::grey(const ConstPixelRows &source, const PixelRows &destination)
{
    for (int y = 0; y < source.height; ++y) {
        const uchar *in = source.row(y);
        uchar *out = destination.row(y);
        for (int x = 0; x < source.width; ++x) {
            const uchar value = greyOf(in);
            keepFourth(in, out, source.pixelBytes);
            std::memset(out, value, 3);
            in += source.pixelBytes;
            out += source.pixelBytes;
        }
    }
}

void FrameSteps::negative(const ConstPixelRows &source, const PixelRows &destination)
{
    for (int y = 0; y < source.height; ++y) {
        const uchar *in = source.row(y);
        uchar *out = destination.row(y);
        const std::size_t bytes = source.rowBytes();
        if (source.pixelBytes == 3) {
            for (std::size_t i = 0; i < bytes; ++i)
                out[i] = static_cast<uchar>(~in[i]);
        } else {
            for (std::size_t i = 0; i < bytes; ++i)
                out[i] = static_cast<uchar>(i % 4 == 3 ? in[i] : ~in[i]);
        }
    }
}

void FrameSteps::mosaic(const ConstPixelRows &source, const PixelRows &destination)
{
    for (int y = 0; y < source.height; y += BLOCK) {
        for (int x = 0; x < source.width; x += BLOCK) {
            const QRect block(x, y, std::min(BLOCK, source.width - x),
                              std::min(BLOCK, source.height - y));
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
