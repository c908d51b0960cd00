// The whole picture pipeline and the whole canvas, beside a copy of the frame and the same chain of
// steps in OpenCV on one thread.

#include "benchmarks/PictureBench.h"
#include "canvas/ImageCanvas.h"
#include "canvas/picture/FramePipeline.h"

#include <QApplication>

namespace
{

using namespace PictureBench;

// The chain: turn, drawing, grey, zoom by 2, circle, and the copies in and out

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
    const std::vector<cv::Rect> tiles = drawnTiles(alpha);
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
        maskCircleInOpenCv(result);
        std::memcpy(source.data(), result.data, bytes);
    });
    label(state);
}

// The whole canvas

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
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        ++source[0];
        canvas.imageCaptured(source.data(), size.width(), size.height(), false, false);
        state.ResumeTiming();
        canvas.render(&screen, QPoint(), QRegion(), QWidget::RenderFlags());
        benchmark::ClobberMemory();
    }
    label(state);
}

void addAll()
{
    add("copy/one", copyOneFrame);
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
    addAll();
    return runAll(argc, argv);
}
