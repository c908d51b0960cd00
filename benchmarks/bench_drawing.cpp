// What a stroke costs at 1920x1080, beside copying the layer it is drawn on.

#include "canvas/ImageCanvas.h"
#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/drawing/Drawing.h"
#include "canvas/picture/ViewGeometry.h"

#include <QApplication>
#include <QMouseEvent>

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace
{

constexpr QSize PICTURE(1920, 1080);

/// The tools over a layer and a view, without a widget and its lock.
struct Board {
    explicit Board(QSize picture = PICTURE)
    {
        view.setFrameSize(picture);
        layer.reset(picture);
        ink.penColor = Qt::red;
    }

    void drag(CanvasModes::MouseMode mode, QPoint from, QPoint to)
    {
        tools.press(mode, from, layer);
        tools.move(mode, to, ink, layer, view);
        tools.release(layer);
    }

    DragTool tools;
    DragTool::ShapeStyle ink;
    AnnotationLayer layer;
    ViewGeometry view;
};

// The yardstick: what a copy of the layer costs, which a press or a move would have to pay for
// keeping or restoring it whole.
void copyLayer(benchmark::State &state)
{
    const auto bytes =
        static_cast<std::size_t>(PICTURE.width()) * 4 * static_cast<std::size_t>(PICTURE.height());
    const std::vector<char> from(bytes, 1);
    std::vector<char> to(bytes, 2);
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(copyLayer)->Unit(benchmark::kMicrosecond);

// Press, one move, release; the stroke wanders so that every tile is met, and each has something to
// rub out.
void shortStroke(benchmark::State &state)
{
    Board board;
    for (int y = 0; y < PICTURE.height(); y += 20)
        board.drag(CanvasModes::Line, {0, y}, {1919, y});
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        const QPoint from(step * 37 % 1880, step * 53 % 1040);
        board.drag(static_cast<CanvasModes::MouseMode>(state.range(0)), from,
                   from + QPoint(20, 12));
        ++step;
    }
}
BENCHMARK(shortStroke)
    ->ArgName("mode")
    ->DenseRange(CanvasModes::Freehand, CanvasModes::Eraser)
    ->Unit(benchmark::kMicrosecond);

// One line, by the width of the picture (16:9) and the length of the line.
void lineByPictureAndLength(benchmark::State &state)
{
    const int width = static_cast<int>(state.range(0));
    const int length = static_cast<int>(state.range(1));
    const int height = width * 9 / 16;
    Board board(QSize(width, height));
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        const QPoint from(step * 37 % (width - length), step * 53 % (height - length / 2));
        board.drag(CanvasModes::Line, from, from + QPoint(length, length / 2));
        ++step;
    }
}
BENCHMARK(lineByPictureAndLength)
    ->ArgNames({"width", "length"})
    ->ArgsProduct({{640, 1280, 1920, 3840}, {20, 100, 400}})
    ->Unit(benchmark::kMicrosecond);

// One move of a shape that is stretched over most of a layer full of drawing.
void largeShapeMove(benchmark::State &state)
{
    Board board;
    board.ink.fillEnabled = state.range(1) != 0;
    for (int y = 0; y < PICTURE.height(); y += 20)
        board.drag(CanvasModes::Line, {0, y}, {1919, y});
    const auto mode = static_cast<CanvasModes::MouseMode>(state.range(0));
    board.tools.press(mode, {200, 200}, board.layer);
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        board.tools.move(mode, {1500 + step % 200, 800 + step % 100}, board.ink, board.layer,
                         board.view);
        board.tools.drawPending(board.layer);
        ++step;
    }
}
BENCHMARK(largeShapeMove)
    ->ArgNames({"mode", "filled"})
    ->Args({CanvasModes::Line, 0})
    ->Args({CanvasModes::Arrow, 0})
    ->Args({CanvasModes::Rectangle, 0})
    ->Args({CanvasModes::Rectangle, 1})
    ->Args({CanvasModes::Circle, 0})
    ->Args({CanvasModes::Circle, 1})
    ->Args({CanvasModes::Triangle, 0})
    ->Unit(benchmark::kMicrosecond);

/// A drawing of many lines with its history, without a widget and its lock.
struct Steps {
    Steps()
    {
        view.setFrameSize(PICTURE);
        drawing.resize(PICTURE);
        ink.penColor = Qt::red;
        for (int y = 0; y < PICTURE.height(); y += 20)
            drag(CanvasModes::Line, {0, y}, {1919, y});
    }

    void drag(CanvasModes::MouseMode mode, QPoint from, QPoint to)
    {
        drawing.press(mode, from);
        drawing.move(mode, to, ink, view);
        drawing.release();
    }

    Drawing drawing;
    DragTool::ShapeStyle ink;
    ViewGeometry view;
};

// shortStroke() as a step that can be taken back: what it changes is kept.
void shortStrokeAsAStep(benchmark::State &state)
{
    Steps steps;
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        const QPoint from(step * 37 % 1880, step * 53 % 1040);
        steps.drag(static_cast<CanvasModes::MouseMode>(state.range(0)), from,
                   from + QPoint(20, 12));
        ++step;
    }
}
BENCHMARK(shortStrokeAsAStep)
    ->ArgName("mode")
    ->DenseRange(CanvasModes::Freehand, CanvasModes::Eraser)
    ->Unit(benchmark::kMicrosecond);

// Undo and redo, each of them one exchange; packed records are unpacked once.
void undoAndRedo(benchmark::State &state, QPoint from, QPoint to, bool packed)
{
    Steps steps;
    steps.ink.fillEnabled = true;
    steps.drag(CanvasModes::Rectangle, from, to);
    std::int64_t now = 0;
    for ([[maybe_unused]] auto _ : state) {
        if (packed) {
            state.PauseTiming();
            for (int i = 0; i < 200; ++i)
                steps.drawing.packHistory(now += i == 0 ? 0 : LayerHistory::REST_MS);
            state.ResumeTiming();
        }
        steps.drawing.undo();
        steps.drawing.redo();
    }
}
BENCHMARK_CAPTURE(undoAndRedo, stroke, QPoint(500, 500), QPoint(520, 512), false)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(undoAndRedo, strokePacked, QPoint(500, 500), QPoint(520, 512), true)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(undoAndRedo, wholeLayer, QPoint(0, 0), QPoint(1919, 1079), false)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(undoAndRedo, wholeLayerPacked, QPoint(0, 0), QPoint(1919, 1079), true)
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(50);

// Erasing all and its undo move the layer's handle.
void eraseAllAndUndo(benchmark::State &state)
{
    Steps steps;
    for ([[maybe_unused]] auto _ : state) {
        steps.drawing.clear();
        steps.drawing.undo();
    }
}
BENCHMARK(eraseAllAndUndo)->Unit(benchmark::kMicrosecond);

void send(QWidget &widget, QEvent::Type type, QPoint point)
{
    const bool moving = type == QEvent::MouseMove;
    const bool over = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, point, moving ? Qt::NoButton : Qt::LeftButton,
                      over ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

// The same through the canvas: events, lock, mapping.
void strokeThroughTheCanvas(benchmark::State &state)
{
    ImageCanvas canvas;
    canvas.resize(960, 540);
    QImage picture(PICTURE, QImage::Format_RGB888);
    picture.fill(Qt::white);
    canvas.imageCaptured(picture);
    canvas.setMouseMode(CanvasModes::Freehand);
    int step = 0;
    for ([[maybe_unused]] auto _ : state) {
        const QPoint from(step * 37 % 940, step * 53 % 520);
        send(canvas, QEvent::MouseButtonPress, from);
        send(canvas, QEvent::MouseMove, from + QPoint(10, 6));
        send(canvas, QEvent::MouseButtonRelease, from + QPoint(10, 6));
        ++step;
    }
}
BENCHMARK(strokeThroughTheCanvas)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
