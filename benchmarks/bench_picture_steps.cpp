// The steps of the picture pipeline, each beside a copy of the frame and the same step in OpenCV on
// one thread.

#include "benchmarks/PictureBench.h"
#include "canvas/picture/FrameSteps.h"
#include "canvas/picture/NearestScaler.h"
#include "settings/CanvasModes.h"

#include <QGuiApplication>

namespace
{

using namespace PictureBench;

void copyThreeFrames(benchmark::State &state)
{
    auto source = noise(sizeOf(state));
    auto a = source;
    auto b = source;
    auto c = source;
    const std::size_t bytes = source.size() - 64;
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(a.data(), source.data(), bytes);
        benchmark::ClobberMemory();
        std::memcpy(b.data(), a.data(), bytes);
        benchmark::ClobberMemory();
        std::memcpy(c.data(), b.data(), bytes);
        benchmark::ClobberMemory();
    }
    label(state);
}

using OurStep = void (*)(const ConstPixelRows &, const PixelRows &);
using TheirStep = void (*)(const cv::Mat &, cv::Mat &);

void ours(benchmark::State &state, OurStep step)
{
    const QSize size = sizeOf(state);
    auto source = noise(size);
    auto target = source;
    const PixelRows to = rowsOf(target, size);
    for ([[maybe_unused]] auto _ : state) {
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
    for ([[maybe_unused]] auto _ : state) {
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
        maskCircleInOpenCv(target);
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
    for ([[maybe_unused]] auto _ : state) {
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
    const std::vector<cv::Rect> tiles = drawnTiles(alpha);
    for ([[maybe_unused]] auto _ : state) {
        for (const cv::Rect &tile : tiles) {
            // These strokes are opaque, so that a copy under a mask is all there is to do.
            colours(tile).copyTo(to(tile), alpha(tile));
        }
        benchmark::ClobberMemory();
    }
    label(state);
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
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    addAll();
    return runAll(argc, argv);
}
