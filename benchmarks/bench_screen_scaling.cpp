// The picture scaled into its place on the screen, beside OpenCV's area scaling and libyuv's box
// filter on one thread, and a copy of the source. Each ends with opaque 32-bit pixels.

#include "canvas/picture/Frame.h"
#include "canvas/picture/NearestScaler.h"
#include "canvas/picture/ScreenScaler.h"

#include <benchmark/benchmark.h>
#include <libyuv.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace
{

struct Case {
    const char *name = nullptr;
    QSize from;
    QSize to;
};

/// Into the canvas of the window as it opens, and into a whole screen.
constexpr std::array<Case, 6> CASES{{
    {"camera", {1920, 1080}, {1000, 562}},
    {"camera", {1280, 720}, {1000, 562}},
    {"camera", {1280, 720}, {1920, 1080}},
    {"12 megapixels", {4000, 3000}, {893, 670}},
    {"50 megapixels", {8192, 6144}, {893, 670}},
    {"50 megapixels", {8192, 6144}, {1440, 1080}},
}};

const Case &caseOf(const benchmark::State &state)
{
    return CASES.at(static_cast<std::size_t>(state.range(0)));
}

void label(benchmark::State &state)
{
    const Case &now = caseOf(state);
    const auto text = [](QSize size) {
        return std::to_string(size.width()) + "x" + std::to_string(size.height());
    };
    state.SetLabel(std::string(now.name) + ", " + text(now.from) + " into " + text(now.to));
}

std::unique_ptr<Frame> noise(QSize size)
{
    std::unique_ptr<Frame> frame = Frame::create(size, QImage::Format_RGB888);
    std::mt19937 random(1);
    const PixelRows rows = frame->rows();
    for (std::size_t i = 0; i + 4 <= frame->byteCount(); i += 4) {
        const auto value = static_cast<std::uint32_t>(random());
        std::memcpy(rows.data + i, &value, 4);
    }
    return frame;
}

/// The pixels of the screen.
struct Screen {
    explicit Screen(QSize screenSize)
        : size(screenSize)
        , pixels(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()))
    {
    }
    [[nodiscard]] std::uint8_t *bytes() { return reinterpret_cast<std::uint8_t *>(pixels.data()); }
    [[nodiscard]] PixelRows rows()
    {
        return {bytes(), size.width(), size.height(), std::ptrdiff_t{4} * size.width(), 4};
    }

    QSize size;
    std::vector<std::uint32_t> pixels;
};

void copySource(benchmark::State &state)
{
    const auto source = noise(caseOf(state).from);
    const auto target = noise(caseOf(state).from);
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(target->rows().data, source->rows().data, source->byteCount());
        benchmark::ClobberMemory();
    }
    label(state);
}

void canvasScales(benchmark::State &state, const FrameKernels *kernels)
{
    if (!kernels) {
        state.SkipWithError("this processor has no such registers");
        return;
    }
    FrameKernels::select(kernels);
    const auto source = noise(caseOf(state).from);
    Screen screen(caseOf(state).to);
    ScreenScaler scaler;
    for ([[maybe_unused]] auto _ : state) {
        scaler.scale(source->rows(), screen.rows());
        benchmark::ClobberMemory();
    }
    FrameKernels::select(nullptr);
    label(state);
}

void nearestScales(benchmark::State &state)
{
    const auto source = noise(caseOf(state).from);
    Screen screen(caseOf(state).to);
    NearestScaler scaler;
    scaler.prepare(source->size(), screen.size);
    for ([[maybe_unused]] auto _ : state) {
        scaler.scaleToRgb32(source->rows(), screen.rows());
        benchmark::ClobberMemory();
    }
    label(state);
}

void openCvScales(benchmark::State &state)
{
    const Case &now = caseOf(state);
    const auto source = noise(now.from);
    Screen screen(now.to);
    const PixelRows rows = source->rows();
    const cv::Mat from(rows.height, rows.width, CV_8UC3, rows.data,
                       static_cast<std::size_t>(rows.stride));
    cv::Mat small;
    cv::Mat to(now.to.height(), now.to.width(), CV_8UC4, screen.bytes());
    const bool down = now.to.width() < now.from.width();
    for ([[maybe_unused]] auto _ : state) {
        cv::resize(from, small, to.size(), 0, 0, down ? cv::INTER_AREA : cv::INTER_LINEAR);
        cv::cvtColor(small, to, cv::COLOR_RGB2BGRA);
        benchmark::ClobberMemory();
    }
    label(state);
}

/// The library's box filter works on planes: with four bytes a pixel it takes every other picture
/// point bilinearly.
void libYuvScalesPlanes(benchmark::State &state)
{
    const Case &now = caseOf(state);
    const auto source = noise(now.from);
    Screen screen(now.to);
    const PixelRows rows = source->rows();
    const int w = now.from.width();
    const int h = now.from.height();
    const int tw = now.to.width();
    const int th = now.to.height();
    std::array<std::vector<std::uint8_t>, 3> whole;
    std::array<std::vector<std::uint8_t>, 3> scaled;
    for (std::size_t i = 0; i < 3; ++i) {
        whole[i].resize(static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
        scaled[i].resize(static_cast<std::size_t>(tw) * static_cast<std::size_t>(th));
    }
    for ([[maybe_unused]] auto _ : state) {
        libyuv::SplitRGBPlane(rows.data, static_cast<int>(rows.stride), whole[0].data(), w,
                              whole[1].data(), w, whole[2].data(), w, w, h);
        for (std::size_t i = 0; i < 3; ++i)
            libyuv::ScalePlane(whole[i].data(), w, w, h, scaled[i].data(), tw, tw, th,
                               libyuv::kFilterBox);
        libyuv::MergeARGBPlane(scaled[0].data(), tw, scaled[1].data(), tw, scaled[2].data(), tw,
                               nullptr, 0, screen.bytes(), 4 * tw, tw, th);
        benchmark::ClobberMemory();
    }
    label(state);
}

void libYuvScalesPixels(benchmark::State &state)
{
    const Case &now = caseOf(state);
    const auto source = noise(now.from);
    Screen screen(now.to);
    const PixelRows rows = source->rows();
    const int w = now.from.width();
    const int h = now.from.height();
    std::vector<std::uint8_t> wide(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 4);
    for ([[maybe_unused]] auto _ : state) {
        // RAW is red first, ARGB blue first in memory.
        libyuv::RAWToARGB(rows.data, static_cast<int>(rows.stride), wide.data(), 4 * w, w, h);
        libyuv::ARGBScale(wide.data(), 4 * w, w, h, screen.bytes(), 4 * now.to.width(),
                          now.to.width(), now.to.height(), libyuv::kFilterBox);
        benchmark::ClobberMemory();
    }
    label(state);
}

template <typename Run>
void add(const char *name, Run run)
{
    benchmark::RegisterBenchmark(name, run)
        ->DenseRange(0, static_cast<int>(CASES.size()) - 1)
        ->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char **argv)
{
    cv::setNumThreads(1);
    add("copy", copySource);
    add("canvas", [](benchmark::State &state) { canvasScales(state, FrameKernels::avx2()); });
    add("canvas, plain",
        [](benchmark::State &state) { canvasScales(state, &FrameKernels::portable()); });
    add("nearest", nearestScales);
    add("opencv", openCvScales);
    add("libyuv, planes", libYuvScalesPlanes);
    add("libyuv, pixels", libYuvScalesPixels);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
