// What the skin costs: painting the frame and the full panel, and building the buttons.

#include "widgets/ImageButton.h"
#include "widgets/Panel.h"
#include "widgets/StyleWindow.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstring>

namespace
{

constexpr QSize WINDOW_SIZE(938, 768);

class Frame : public StyleWindow
{
public:
    Frame()
    {
        setExpanded(true);
        setBuilt();
        resize(WINDOW_SIZE);
        rescaleEdges();
    }

    void reposition() override {}
};

// Four groups and 24 tools: the fullest panel that a mode shows.
void fill(Panel &panel)
{
    const QStringList tools{"ICON_LINE",  "ICON_RETANGLE", "ICON_FREEHAND", "ICON_CIRCLE",
                            "ICON_ARROW", "ICON_TRIANGLE", "ICON_ERASE",    "ICON_TEXT"};
    int next = 0;
    for (const int count : {10, 2, 8, 4}) {
        panel.addGroup("Adjustment");
        for (int i = 0; i < count; ++i)
            panel.addButton(new ImageButton(tools[next++ % tools.size()], "tip", &panel, 0, 0));
    }
    panel.finishAdding();
    panel.resize(panel.width(), WINDOW_SIZE.height() - 100);
}

QImage target(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    return image;
}

// The yardstick: moving as many pixels as the window has.
void copyWindowPixels(benchmark::State &state)
{
    const QImage from = target(WINDOW_SIZE);
    QImage to = target(WINDOW_SIZE);
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(to.bits(), from.constBits(), static_cast<size_t>(from.sizeInBytes()));
        benchmark::ClobberMemory();
    }
}

void paintFrame(benchmark::State &state)
{
    Frame frame;
    QImage image = target(WINDOW_SIZE);
    for ([[maybe_unused]] auto _ : state)
        frame.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
}

void paintFrameAndFullPanel(benchmark::State &state)
{
    Frame frame;
    Panel panel(&frame);
    fill(panel);
    panel.move(40, 30);
    QImage image = target(WINDOW_SIZE);
    for ([[maybe_unused]] auto _ : state)
        frame.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
}

void paintOneButton(benchmark::State &state)
{
    ImageButton button("ICON_LINE", nullptr, 0, 0);
    QImage image = target(button.size());
    for ([[maybe_unused]] auto _ : state)
        button.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
}

void buildFullPanel(benchmark::State &state)
{
    for ([[maybe_unused]] auto _ : state) {
        Panel panel(nullptr);
        fill(panel);
        benchmark::DoNotOptimize(&panel);
    }
}

BENCHMARK(copyWindowPixels)->Unit(benchmark::kMicrosecond);
BENCHMARK(paintFrame)->Unit(benchmark::kMicrosecond);
BENCHMARK(paintFrameAndFullPanel)->Unit(benchmark::kMicrosecond);
BENCHMARK(paintOneButton)->Unit(benchmark::kMicrosecond);
BENCHMARK(buildFullPanel)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
