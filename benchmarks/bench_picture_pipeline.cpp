// The steps of the picture pipeline and the whole canvas, each beside a copy of the frame and the
// same step in OpenCV on one thread. The argument is the row of SIZES.

#include "canvas/ImageCanvas.h"
#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/picture/FramePipeline.h"
#include "canvas/picture/FrameSteps.h"

#include <QApplication>
#include <QPainter>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

namespace
{

constexpr std::array<QSize, 4> SIZES{QSize(1024, 768), QSize(1280, 720), QSize(1920, 1080),
                                     QSize(3840, 2160)};

QSize sizeOf(const benchmark::State &state)
{
    return SIZES.at(static_cast<std::size_t>(state.range(0)));
}

void label(benchmark::State &state)
{
    const QSize size = sizeOf(state);
    state.SetLabel(std::to_string(size.width()) + "x" + std::to_string(size.height()));
}

std::vector<uchar> noise(QSize size)
{
    std::mt19937 random(1);
    std::vector<uchar> bytes(static_cast<std::size_t>(size.width() * size.height() * 3) + 64);
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        const auto value = static_cast<std::uint32_t>(random());
        std::memcpy(bytes.data() + i, &value, 4);
    }
    return bytes;
}

PixelRows rowsOf(std::vector<uchar> &bytes, QSize size)
{
    return {bytes.data(), size.width(), size.height(), std::ptrdiff_t{3} * size.width(), 3};
}

cv::Mat matOf(std::vector<uchar> &bytes, QSize size)
{
    return {size.height(), size.width(), CV_8UC3, bytes.data()};
}

/// A few strokes of a pen, as a speaker underlines a word and points at another.
void drawStrokes(QPainter &painter, QSize size)
{
    painter.setPen(QPen(Qt::red, 6));
    painter.drawLine(size.width() / 4, size.height() / 3, size.width() / 2, size.height() / 3);
    painter.drawLine(size.width() / 2, size.height() / 2, size.width() * 5 / 8,
                     size.height() * 5 / 8);
    painter.drawEllipse(size.width() / 8, size.height() / 8, 200, 90);
}

QImage strokes(QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawStrokes(painter, size);
    return image;
}

void drawOn(AnnotationLayer &layer, QSize size)
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

// A frame's copy, the measure of everything
// ---------------------------------------------------------

void copyOneFrame(benchmark::State &state)
{
    auto source = noise(sizeOf(state));
    auto target = source;
    const std::size_t bytes = source.size() - 64;
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), bytes);
        benchmark::ClobberMemory();
    }
    label(state);
}

void copyThreeFrames(benchmark::State &state)
{
    auto source = noise(sizeOf(state));
    auto a = source;
    auto b = source;
    auto c = source;
    const std::size_t bytes = source.size() - 64;
    for (auto _ : state) {
        std::memcpy(a.data(), source.data(), bytes);
        benchmark::ClobberMemory();
        std::memcpy(b.data(), a.data(), bytes);
        benchmark::ClobberMemory();
        std::memcpy(c.data(), b.data(), bytes);
        benchmark::ClobberMemory();
    }
    label(state);
}

// Single steps, ours and theirs
// -----------------------------------------------------------------------

using OurStep = void (*)(const ConstPixelRows &, const PixelRows &);
using TheirStep = void (*)(const cv::Mat &, cv::Mat &);

void ours(benchmark::State &state, OurStep step)
{
    const QSize size = sizeOf(state);
    auto source = noise(size);
    auto target = source;
    const PixelRows to = rowsOf(target, size);
    for (auto _ : state) {
        step(rowsOf(source, size), to);
        benchmark::ClobberMemory();
    }
    label(state);
}

void theirs(benchmark::State &state, TheirStep step)
{
    const QSize size = sizeOf(state);
    auto source = noise(size);
    auto target = source;
    const cv::Mat from = matOf(source, size);
    cv::Mat to = matOf(target, size);
    for (auto _ : state) {
        step(from, to);
        benchmark::ClobberMemory();
    }
    label(state);
}

void ourTurn(const ConstPixelRows &source, const PixelRows &target)
{
    const QSize turned = source.size().transposed();
    FrameSteps::turn(
        source, 1, QRect({0, 0}, turned),
        {target.data, turned.width(), turned.height(), std::ptrdiff_t{3} * turned.width(), 3});
}

void theirTurn(const cv::Mat &source, cv::Mat &target)
{
    cv::Mat turned(source.cols, source.rows, CV_8UC3, target.data);
    cv::rotate(source, turned, cv::ROTATE_90_CLOCKWISE);
}

void theirGrey(const cv::Mat &source, cv::Mat &target)
{
    static cv::Mat grey;
    cv::cvtColor(source, grey, cv::COLOR_RGB2GRAY);
    cv::cvtColor(grey, target, cv::COLOR_GRAY2RGB);
}

void theirNegative(const cv::Mat &source, cv::Mat &target)
{
    cv::bitwise_not(source, target);
}

void theirMosaic(const cv::Mat &source, cv::Mat &target)
{
    static cv::Mat small;
    cv::resize(source, small, cv::Size((source.cols + 7) / 8, (source.rows + 7) / 8), 0, 0,
               cv::INTER_AREA);
    cv::resize(small, target, source.size(), 0, 0, cv::INTER_NEAREST);
}

template <CanvasModes::MaskMode mode>
void ourMask(const ConstPixelRows &, const PixelRows &target)
{
    FrameSteps::mask(mode, target);
}

template <CanvasModes::MaskMode mode>
void theirMask(const cv::Mat &source, cv::Mat &target)
{
    const int w = source.cols;
    const int h = source.rows;
    if constexpr (mode == CanvasModes::MaskLeft) {
        target(cv::Rect(0, 0, w / 2, h)).setTo(cv::Scalar::all(0));
    } else if constexpr (mode == CanvasModes::MaskTop) {
        target(cv::Rect(0, 0, w, h / 2)).setTo(cv::Scalar::all(0));
    } else if constexpr (mode == CanvasModes::MaskRectangle) {
        const int a = static_cast<int>(w * 0.3);
        const int b = static_cast<int>(h * 0.3);
        target(cv::Rect(0, 0, w, h / 2 - b)).setTo(cv::Scalar::all(0));
        target(cv::Rect(0, h / 2 + b + 1, w, h - h / 2 - b - 1)).setTo(cv::Scalar::all(0));
        target(cv::Rect(0, 0, w / 2 - a, h)).setTo(cv::Scalar::all(0));
        target(cv::Rect(w / 2 + a + 1, 0, w - w / 2 - a - 1, h)).setTo(cv::Scalar::all(0));
    } else {
        // The mask is made once a size, as a player would.
        static cv::Mat outside;
        if (outside.size() != source.size()) {
            outside = cv::Mat(source.size(), CV_8UC1, cv::Scalar(255));
            cv::circle(outside, {w / 2, h / 2}, static_cast<int>(std::min(w, h) * 0.48),
                       cv::Scalar(0), cv::FILLED);
        }
        target.setTo(cv::Scalar::all(0), outside);
    }
}

template <int factor>
void ourZoom(const ConstPixelRows &source, const PixelRows &target)
{
    static NearestScaler scaler;
    const ConstPixelRows part = source.part(
        {source.width / 4, source.height / 4, source.width / factor, source.height / factor});
    scaler.prepare(part.size(), source.size());
    scaler.scale(part, target);
}

template <int factor>
void theirZoom(const cv::Mat &source, cv::Mat &target)
{
    const cv::Rect part(source.cols / 4, source.rows / 4, source.cols / factor,
                        source.rows / factor);
    cv::resize(source(part), target, target.size(), 0, 0, cv::INTER_NEAREST);
}

void ourLayer(benchmark::State &state)
{
    const QSize size = sizeOf(state);
    auto target = noise(size);
    AnnotationLayer layer;
    drawOn(layer, size);
    for (auto _ : state) {
        FrameSteps::layOver(layer, layer.rect(), rowsOf(target, size));
        benchmark::ClobberMemory();
    }
    label(state);
}

/// The same drawing, 64 x 64 tiles that have something in them, blended in floating point as
/// OpenCV's own functions can: a weighted sum under a mask.
void theirLayer(benchmark::State &state)
{
    const QSize size = sizeOf(state);
    auto target = noise(size);
    cv::Mat to = matOf(target, size);
    const QImage image = strokes(size);
    std::vector<cv::Rect> tiles;
    cv::Mat colours(size.height(), size.width(), CV_8UC3);
    cv::Mat alpha(size.height(), size.width(), CV_8UC1);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            colours.at<cv::Vec3b>(y, x) = {static_cast<uchar>(qRed(pixel)),
                                           static_cast<uchar>(qGreen(pixel)),
                                           static_cast<uchar>(qBlue(pixel))};
            alpha.at<uchar>(y, x) = static_cast<uchar>(qAlpha(pixel));
        }
    }
    for (int y = 0; y < size.height(); y += 64) {
        for (int x = 0; x < size.width(); x += 64) {
            const cv::Rect tile(x, y, std::min(64, size.width() - x),
                                std::min(64, size.height() - y));
            if (cv::countNonZero(alpha(tile)) > 0)
                tiles.push_back(tile);
        }
    }
    for (auto _ : state) {
        for (const cv::Rect &tile : tiles) {
            // These strokes are opaque, so that a copy under a mask is all there is to do.
            colours(tile).copyTo(to(tile), alpha(tile));
        }
        benchmark::ClobberMemory();
    }
    label(state);
}

// The chain: turn, drawing, grey, zoom by 2, circle, and the copies in and out
// ------------------------

/// Measures the work in the steady state: buffers that are used over and over have been touched.
template <typename Work>
void measureSteady(benchmark::State &state, Work work)
{
    constexpr int WARM_UP_FRAMES = 4;
    for (int frame = 0; frame < WARM_UP_FRAMES; ++frame)
        work();
    for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
    }
}

void ourChain(benchmark::State &state)
{
    const QSize size = sizeOf(state);
    auto source = noise(size);
    FramePipeline pipeline;
    AnnotationLayer layer;
    ViewGeometry view;
    view.setFrameSize(size);
    view.turn(true);
    view.zoom({size.height() / 2.0, size.width() / 2.0}, 2);
    drawOn(layer, view.rotatedSize());
    const std::size_t bytes = source.size() - 64;
    measureSteady(state, [&] {
        const std::shared_ptr<Frame> frame = pipeline.pool().acquire(size, QImage::Format_RGB888);
        std::memcpy(frame->rows().data, source.data(), bytes);
        const FramePtr result =
            pipeline.run(frame, layer, {view, CanvasModes::EffectBW, CanvasModes::MaskCircle});
        std::memcpy(source.data(), result->rows().data, bytes);
    });
    label(state);
}

void theirChain(benchmark::State &state)
{
    const QSize size = sizeOf(state);
    auto source = noise(size);
    const std::size_t bytes = source.size() - 64;
    std::vector<uchar> frame(bytes);
    const cv::Mat from(size.height(), size.width(), CV_8UC3, frame.data());
    const QSize turnedSize = size.transposed();
    const QImage image = strokes(turnedSize);
    cv::Mat turned;
    cv::Mat colours(turnedSize.height(), turnedSize.width(), CV_8UC3, cv::Scalar(255, 0, 0));
    cv::Mat alpha(turnedSize.height(), turnedSize.width(), CV_8UC1);
    for (int y = 0; y < turnedSize.height(); ++y) {
        for (int x = 0; x < turnedSize.width(); ++x)
            alpha.at<uchar>(y, x) = static_cast<uchar>(qAlpha(image.pixel(x, y)));
    }
    std::vector<cv::Rect> tiles;
    for (int y = 0; y < turnedSize.height(); y += 64) {
        for (int x = 0; x < turnedSize.width(); x += 64) {
            const cv::Rect tile(x, y, std::min(64, turnedSize.width() - x),
                                std::min(64, turnedSize.height() - y));
            if (cv::countNonZero(alpha(tile)) > 0)
                tiles.push_back(tile);
        }
    }
    cv::Mat grey;
    cv::Mat back;
    cv::Mat result(size.height(), size.width(), CV_8UC3);
    const int seenWidth = std::min(size.width() / 2, turnedSize.width());
    const int seenHeight = std::min(size.height() / 2, turnedSize.height());
    measureSteady(state, [&] {
        std::memcpy(frame.data(), source.data(), bytes);
        cv::rotate(from, turned, cv::ROTATE_90_CLOCKWISE);
        for (const cv::Rect &tile : tiles)
            colours(tile).copyTo(turned(tile), alpha(tile));
        cv::cvtColor(turned, grey, cv::COLOR_RGB2GRAY);
        cv::cvtColor(grey, back, cv::COLOR_GRAY2RGB);
        const cv::Rect seen((turnedSize.width() - seenWidth) / 2,
                            (turnedSize.height() - seenHeight) / 2, seenWidth, seenHeight);
        cv::resize(back(seen), result, result.size(), 0, 0, cv::INTER_NEAREST);
        theirMask<CanvasModes::MaskCircle>(result, result);
        std::memcpy(source.data(), result.data, bytes);
    });
    label(state);
}

// The whole canvas
// --------------------------------------------------------------------------------------

/// Every frame has another first byte, so that no result can be taken for the one before.
void canvasFrames(benchmark::State &state, const std::function<void(ImageCanvas &)> &prepare)
{
    const QSize size = sizeOf(state);
    auto source = noise(size);
    ImageCanvas canvas;
    canvas.imageCaptured(source.data(), size.width(), size.height(), false, false);
    prepare(canvas);
    measureSteady(state, [&] {
        ++source[0];
        canvas.imageCaptured(source.data(), size.width(), size.height(), false, false);
    });
    label(state);
}

void canvasPaint(benchmark::State &state)
{
    const QSize size = sizeOf(state);
    auto source = noise(size);
    ImageCanvas canvas;
    canvas.resize(1000, 670);
    QImage screen(canvas.size(), QImage::Format_RGB32);
    for (auto _ : state) {
        state.PauseTiming();
        ++source[0];
        canvas.imageCaptured(source.data(), size.width(), size.height(), false, false);
        state.ResumeTiming();
        canvas.render(&screen, QPoint(), QRegion(), QWidget::RenderFlags());
        benchmark::ClobberMemory();
    }
    label(state);
}

void add(const std::string &name, const std::function<void(benchmark::State &)> &run)
{
    benchmark::RegisterBenchmark(name.c_str(), run)
        ->DenseRange(0, static_cast<int>(SIZES.size()) - 1)
        ->Unit(benchmark::kMicrosecond);
}

void addPair(const std::string &name, OurStep our, TheirStep their)
{
    add(name + "/canvas", [our](benchmark::State &state) { ours(state, our); });
    add(name + "/opencv", [their](benchmark::State &state) { theirs(state, their); });
}

void addAll()
{
    add("copy/one", copyOneFrame);
    add("copy/three", copyThreeFrames);
    addPair("turn", ourTurn, theirTurn);
    addPair("grey", FrameSteps::grey, theirGrey);
    addPair("negative", FrameSteps::negative, theirNegative);
    addPair("mosaic", FrameSteps::mosaic, theirMosaic);
    addPair("mask-circle", ourMask<CanvasModes::MaskCircle>, theirMask<CanvasModes::MaskCircle>);
    addPair("mask-rectangle", ourMask<CanvasModes::MaskRectangle>,
            theirMask<CanvasModes::MaskRectangle>);
    addPair("mask-left", ourMask<CanvasModes::MaskLeft>, theirMask<CanvasModes::MaskLeft>);
    addPair("mask-top", ourMask<CanvasModes::MaskTop>, theirMask<CanvasModes::MaskTop>);
    addPair("zoom-2", ourZoom<2>, theirZoom<2>);
    addPair("zoom-6", ourZoom<6>, theirZoom<6>);
    add("layer/canvas", ourLayer);
    add("layer/opencv", theirLayer);
    add("chain/canvas", ourChain);
    add("chain/opencv", theirChain);
    add("imageCaptured/plain",
        [](benchmark::State &state) { canvasFrames(state, [](ImageCanvas &) {}); });
    add("imageCaptured/grey", [](benchmark::State &state) {
        canvasFrames(state, [](ImageCanvas &canvas) { canvas.effectMode = ImageCanvas::EffectBW; });
    });
    add("imageCaptured/turned", [](benchmark::State &state) {
        canvasFrames(state, [](ImageCanvas &canvas) { canvas.rotate(); });
    });
    add("imageCaptured/zoomed", [](benchmark::State &state) {
        canvasFrames(state, [](ImageCanvas &canvas) { canvas.zoomIn(); });
    });
    add("paintEvent/1000x670", canvasPaint);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    cv::setNumThreads(1);
    addAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
