#pragma once

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/picture/PixelRows.h"

#include <QImage>
#include <QPainter>
#include <QSize>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

/// What the benchmarks of the picture pipeline share: frames of noise, a drawing, and the copy of a
/// frame by which everything is measured. The argument of a benchmark is the row of SIZES.
namespace PictureBench
{

inline constexpr std::array<QSize, 4> SIZES{QSize(1024, 768), QSize(1280, 720), QSize(1920, 1080),
                                            QSize(3840, 2160)};

inline QSize sizeOf(const benchmark::State &state)
{
    return SIZES.at(static_cast<std::size_t>(state.range(0)));
}

inline void label(benchmark::State &state)
{
    const QSize size = sizeOf(state);
    state.SetLabel(std::to_string(size.width()) + "x" + std::to_string(size.height()));
}

inline std::vector<uchar> noise(QSize size)
{
    std::mt19937 random(1);
    std::vector<uchar> bytes(static_cast<std::size_t>(size.width() * size.height() * 3) + 64);
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        const auto value = static_cast<std::uint32_t>(random());
        std::memcpy(bytes.data() + i, &value, 4);
    }
    return bytes;
}

inline PixelRows rowsOf(std::vector<uchar> &bytes, QSize size)
{
    return {bytes.data(), size.width(), size.height(), std::ptrdiff_t{3} * size.width(), 3};
}

inline cv::Mat matOf(std::vector<uchar> &bytes, QSize size)
{
    return {size.height(), size.width(), CV_8UC3, bytes.data()};
}

/// A few strokes of a pen, as a speaker underlines a word and points at another.
inline void drawStrokes(QPainter &painter, QSize size)
{
    painter.setPen(QPen(Qt::red, 6));
    painter.drawLine(size.width() / 4, size.height() / 3, size.width() / 2, size.height() / 3);
    painter.drawLine(size.width() / 2, size.height() / 2, size.width() * 5 / 8,
                     size.height() * 5 / 8);
    painter.drawEllipse(size.width() / 8, size.height() / 8, 200, 90);
}

inline QImage strokes(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawStrokes(painter, size);
    return image;
}

inline void drawOn(AnnotationLayer &layer, QSize size)
{
    layer.reset(size);
    QVector<QRect> parts{
        QRect(size.width() / 4 - 4, size.height() / 3 - 4, size.width() / 4 + 8, 8),
        QRect(size.width() / 8 - 4, size.height() / 8 - 4, 208, 98)};
    for (int i = 0; i < 8; ++i)
        parts.append(QRect(size.width() / 2 + size.width() / 64 * i - 4,
                           size.height() / 2 + size.height() / 64 * i - 4, size.width() / 64 + 8,
                           size.height() / 64 + 8));
    layer.paint(parts, [size](QPainter &painter) { drawStrokes(painter, size); });
    layer.setUsed();
}

/// Measures the work in the steady state: buffers that are used over and over have been touched.
template <typename Work>
inline void measureSteady(benchmark::State &state, Work work)
{
    constexpr int WARM_UP_FRAMES = 4;
    for (int frame = 0; frame < WARM_UP_FRAMES; ++frame)
        work();
    for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
    }
}

/// Blackens what lies outside of a circle. The mask is made once a size, as a player would.
inline void maskCircleInOpenCv(cv::Mat &target)
{
    static cv::Mat outside;
    if (outside.size() != target.size()) {
        const int w = target.cols;
        const int h = target.rows;
        outside = cv::Mat(target.size(), CV_8UC1, cv::Scalar(255));
        cv::circle(outside, {w / 2, h / 2}, static_cast<int>(std::min(w, h) * 0.48), cv::Scalar(0),
                   cv::FILLED);
    }
    target.setTo(cv::Scalar::all(0), outside);
}

/// The tiles of 64 x 64 pixels that have something in them.
inline std::vector<cv::Rect> drawnTiles(const cv::Mat &alpha)
{
    std::vector<cv::Rect> tiles;
    for (int y = 0; y < alpha.rows; y += 64) {
        for (int x = 0; x < alpha.cols; x += 64) {
            const cv::Rect tile(x, y, std::min(64, alpha.cols - x), std::min(64, alpha.rows - y));
            if (cv::countNonZero(alpha(tile)) > 0)
                tiles.push_back(tile);
        }
    }
    return tiles;
}

inline void copyOneFrame(benchmark::State &state)
{
    auto source = noise(sizeOf(state));
    auto target = source;
    const std::size_t bytes = source.size() - 64;
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(target.data(), source.data(), bytes);
        benchmark::ClobberMemory();
    }
    label(state);
}

inline void add(const std::string &name, const std::function<void(benchmark::State &)> &run)
{
    benchmark::RegisterBenchmark(name.c_str(), run)
        ->DenseRange(0, static_cast<int>(SIZES.size()) - 1)
        ->Unit(benchmark::kMicrosecond);
}

inline int runAll(int argc, char **argv)
{
    cv::setNumThreads(1);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace PictureBench
