// What a frame of the camera costs until it is packed RGB: one that is not compressed against the
// bare conversion of libyuv, and the bare decode of Motion-JPEG for the largest size.
#include "sources/camera/PackedRgb.h"

#include <QBuffer>
#include <QImage>

#include <benchmark/benchmark.h>
#include <libuvc/libuvc.h>
#include <libyuv/convert_argb.h>
#include <libyuv/convert_from_argb.h>

#include <cstdint>
#include <random>
#include <vector>

namespace
{

constexpr int WIDTH = 1280, HEIGHT = 720;
constexpr QSize LARGEST(3840, 2160);

std::vector<std::uint8_t> noise(std::size_t size)
{
    std::mt19937 random(1);
    std::vector<std::uint8_t> bytes(size);
    for (std::uint8_t &byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

std::size_t pixels()
{
    return std::size_t{WIDTH} * HEIGHT;
}

void yuyvToRgb(benchmark::State &state)
{
    const auto frame = noise(2 * pixels());
    std::vector<std::uint8_t> rgb(3 * pixels());
    PackedRgb packed(StreamFormats::Coding::Yuyv, {WIDTH, HEIGHT});
    for (auto unused : state) {
        (void)unused;
        benchmark::DoNotOptimize(packed.convert(frame.data(), frame.size(), rgb.data()));
    }
}
BENCHMARK(yuyvToRgb)->Unit(benchmark::kMicrosecond);

/// The library's one step, to four bytes a pixel.
void libyuvToFourBytes(benchmark::State &state)
{
    const auto frame = noise(2 * pixels());
    std::vector<std::uint8_t> argb(4 * pixels());
    for (auto unused : state) {
        (void)unused;
        libyuv::YUY2ToARGB(frame.data(), 2 * WIDTH, argb.data(), 4 * WIDTH, WIDTH, HEIGHT);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(libyuvToFourBytes)->Unit(benchmark::kMicrosecond);

/// Its two steps to packed RGB, frame by frame.
void libyuvToRgb(benchmark::State &state)
{
    const auto frame = noise(2 * pixels());
    std::vector<std::uint8_t> argb(4 * pixels()), rgb(3 * pixels());
    for (auto unused : state) {
        (void)unused;
        libyuv::YUY2ToARGB(frame.data(), 2 * WIDTH, argb.data(), 4 * WIDTH, WIDTH, HEIGHT);
        libyuv::ARGBToRAW(argb.data(), 4 * WIDTH, rgb.data(), 3 * WIDTH, WIDTH, HEIGHT);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(libyuvToRgb)->Unit(benchmark::kMicrosecond);

/// A sheet of text has about as many details as this.
QByteArray largestJpeg()
{
    QImage picture(LARGEST, QImage::Format_RGB888);
    picture.fill(Qt::white);
    std::mt19937 random(1);
    for (int y = 0; y < picture.height(); ++y) {
        std::uint8_t *row = picture.scanLine(y);
        for (int x = 0; x < picture.bytesPerLine(); ++x) {
            if (y / 40 % 2 && x / 30 % 3)
                row[x] = static_cast<std::uint8_t>(y / 8 % 2 ? random() % 16 : x / 3 % 200);
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "JPEG", 80);
    return bytes;
}

void largestMotionJpeg(benchmark::State &state)
{
    QByteArray jpeg = largestJpeg();
    uvc_frame_t *rgb =
        uvc_allocate_frame(static_cast<std::size_t>(LARGEST.width()) * LARGEST.height() * 3);
    uvc_frame_t frame{};
    frame.data = jpeg.data();
    frame.data_bytes = static_cast<std::size_t>(jpeg.size());
    frame.width = static_cast<std::uint32_t>(LARGEST.width());
    frame.height = static_cast<std::uint32_t>(LARGEST.height());
    frame.frame_format = UVC_FRAME_FORMAT_MJPEG;
    for (auto unused : state) {
        (void)unused;
        benchmark::DoNotOptimize(uvc_mjpeg2rgb(&frame, rgb));
    }
    state.counters["kB"] = static_cast<double>(jpeg.size()) / 1000;
    uvc_free_frame(rgb);
}
BENCHMARK(largestMotionJpeg)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
