#include "canvas/drawing/Drawing.h"
#include "canvas/drawing/LayerHistory.h"
#include "canvas/picture/ViewGeometry.h"
#include "tests/Allocator.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QFile>
#include <QPainter>
#include <QRandomGenerator>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

#include <unistd.h>

namespace
{

/// More than any bookkeeping and less than a tile.
constexpr std::size_t LARGE = 8000;
std::atomic<bool> memoryIsShort{false};
/// How many large blocks can still be had while memory counts as used up.
std::atomic<int> blocksLeft{0};

bool isRefused(std::size_t bytes)
{
    return bytes >= LARGE && memoryIsShort && blocksLeft-- <= 0;
}

} // namespace

void *operator new[](std::size_t bytes, const std::nothrow_t &) noexcept
{
    return isRefused(bytes) ? nullptr : std::malloc(bytes);
}

void *operator new[](std::size_t bytes)
{
    if (void *block = std::malloc(bytes))
        return block;
    throw std::bad_alloc();
}

void operator delete[](void *block) noexcept
{
    std::free(block);
}

void operator delete[](void *block, std::size_t) noexcept
{
    std::free(block);
}

namespace
{

constexpr QSize SQUARE(640, 640);

/// Of the process, in bytes.
qint64 residentMemory()
{
    QFile file("/proc/self/statm");
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

/// Pixels that cannot be packed.
void paintNoise(AnnotationLayer &layer, quint32 seed)
{
    layer.paint({layer.rect()}, [&](QPainter &painter) {
        QImage noise(layer.size(), QImage::Format_ARGB32_Premultiplied);
        QRandomGenerator random(seed);
        for (int y = 0; y < noise.height(); ++y) {
            auto *row = reinterpret_cast<QRgb *>(noise.scanLine(y));
            for (int x = 0; x < noise.width(); ++x)
                row[x] = 0xFF000000U | random.generate();
        }
        painter.drawImage(0, 0, noise);
    });
}

struct SquareBoard {
    explicit SquareBoard(QSize size = SQUARE)
    {
        view.setFrameSize(size);
        drawing.resize(size);
    }
    void line(QPoint from, QPoint to)
    {
        drawing.press(CanvasModes::Line, from);
        drawing.move(CanvasModes::Line, to, style, view);
        drawing.release();
    }
    [[nodiscard]] QImage shown() { return drawing.layer().image().copy(); }

    Drawing drawing;
    ViewGeometry view;
    DragTool::ShapeStyle style{Qt::red, 3, false, Qt::blue};
};

} // namespace

class LayerHistoryTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        memoryIsShort = false;
        blocksLeft = 0;
    }

    void theOldestStepsAreForgotten()
    {
        SquareBoard board;
        for (int i = 0; i < LayerHistory::MOST_STEPS + 20; ++i)
            board.line({10, 10 + i}, {60, 10 + i});
        QCOMPARE(board.drawing.history().steps(), LayerHistory::MOST_STEPS);
        int undone = 0;
        while (board.drawing.undo())
            ++undone;
        QCOMPARE(undone, LayerHistory::MOST_STEPS);
        // What the forgotten steps drew stays.
        QVERIFY(qAlpha(board.shown().pixel(30, 25)) != 0);
        QCOMPARE(board.shown().pixel(30, 60), 0U);
    }

    void theMemoryIsBounded()
    {
        LayerHistory history;
        AnnotationLayer layer;
        layer.reset(SQUARE);
        // 1.6 MB each.
        for (quint32 i = 0; i < 60; ++i) {
            layer.beginShape();
            paintNoise(layer, i);
            history.add({layer.endShape().changed, 0});
            QVERIFY(history.bytes() <= LayerHistory::MOST_BYTES);
        }
        QVERIFY(history.steps() < 60);
        QVERIFY(history.bytes() > LayerHistory::MOST_BYTES * 9 / 10);
        const int before = history.steps();
        int undone = 0;
        while (history.undo([&](LayerRecord &r) { return r.exchangeWith(layer, 0); })) {
            ++undone;
            QVERIFY(history.bytes() <= LayerHistory::MOST_BYTES);
        }
        QCOMPARE(undone, before);
    }

    void whatWasTakenBackIsForgottenFromItsFarEnd()
    {
        // 1.6 MB each as they are drawn, and nothing before.
        constexpr int STEPS = 60;
        std::vector<AnnotationLayer> layers(STEPS);
        std::vector<QRgb> drawn;
        LayerHistory history;
        for (int i = 0; i < STEPS; ++i) {
            AnnotationLayer &layer = layers[std::size_t(i)];
            layer.reset(SQUARE);
            layer.beginShape();
            paintNoise(layer, quint32(i));
            history.add({layer.endShape().changed, 0});
            drawn.push_back(layer.image().pixel(5, 5));
        }
        QVERIFY(history.bytes() < LayerHistory::MOST_BYTES / 10);
        std::size_t last = STEPS;
        while (history.undo([&](LayerRecord &r) { return r.exchangeWith(layers[last - 1], 0); })) {
            --last;
            QVERIFY(history.bytes() <= LayerHistory::MOST_BYTES);
        }
        const int left = history.steps();
        QVERIFY2(left > 30 && left < STEPS, qPrintable(QString::number(left)));
        // The step that was taken back last is the first to come again.
        std::size_t next = last;
        while (history.redo([&](LayerRecord &r) { return r.exchangeWith(layers[next], 0); })) {
            QCOMPARE(layers[next].image().pixel(5, 5), drawn[next]);
            ++next;
        }
        QCOMPARE(int(next - last), left);
    }

    void whatIsLargeIsPackedBeforeItIsForgotten()
    {
        SquareBoard board({6400, 6400});
        // 160 MB that lie untouched take none; a filled part of 64 MB is packed at once.
        board.style = {Qt::red, 1, true, Qt::blue};
        board.drawing.press(CanvasModes::Rectangle, {100, 100});
        board.drawing.move(CanvasModes::Rectangle, {4300, 4300}, board.style, board.view);
        board.drawing.release();
        const QImage drawn = board.shown();
        board.drawing.clear();
        QCOMPARE(board.drawing.history().steps(), 2);
        QVERIFY(board.drawing.history().bytes() < LayerHistory::MOST_BYTES / 4);
        QVERIFY(board.drawing.undo());
        QVERIFY(board.shown() == drawn);
    }

    void whatHasRestedIsPacked()
    {
        SquareBoard board;
        for (int i = 0; i < 50; ++i)
            board.line({10, 10 + 12 * i}, {600, 10 + 12 * i});
        board.drawing.clear();
        const std::size_t before = board.drawing.history().bytes();
        board.drawing.packHistory(1000);
        board.drawing.packHistory(1000 + LayerHistory::REST_MS - 1);
        QCOMPARE(board.drawing.history().bytes(), before);
        for (int i = 0; i < 100; ++i)
            board.drawing.packHistory(1000 + LayerHistory::REST_MS);
        QVERIFY(board.drawing.history().bytes() < before / 4);
        for (int i = 0; i < 51; ++i)
            QVERIFY(board.drawing.undo());
        QVERIFY(board.drawing.layer().isBlank());
    }

    void tenThousandStrokesStayInTheBounds()
    {
        constexpr qint64 MOST_GROWTH = 80LL * 1024 * 1024;
        const qint64 before = residentMemory();
        QVERIFY(before > 0);
        SquareBoard board({1920, 1080});
        for (int i = 0; i < 10000; ++i) {
            const QPoint from(i * 37 % 1880, i * 53 % 1040);
            board.line(from, from + QPoint(20, 12));
        }
        QCOMPARE(board.drawing.history().steps(), LayerHistory::MOST_STEPS);
        QVERIFY(board.drawing.history().bytes() < LayerHistory::MOST_BYTES);
        const qint64 growth = residentMemory() - before;
        QVERIFY2(!SYSTEM_ALLOCATOR || growth < MOST_GROWTH, qPrintable(QString::number(growth)));
    }

    void aStepThatFindsNoMemoryIsDroppedAndNotTheDrawing()
    {
        SquareBoard board;
        board.line({10, 20}, {600, 20});
        board.line({10, 200}, {600, 200});
        memoryIsShort = true;
        board.line({10, 30}, {600, 30});
        memoryIsShort = false;
        const QImage drawn = board.shown();
        QVERIFY(qAlpha(drawn.pixel(300, 30)) != 0);
        QCOMPARE(board.drawing.history().steps(), 2);
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown().pixel(300, 200), 0U);
        QVERIFY(qAlpha(board.shown().pixel(300, 30)) != 0);
        QVERIFY(board.drawing.undo());
        QVERIFY(board.drawing.layer().isBlank());
        QVERIFY(board.drawing.redo());
        QVERIFY(board.drawing.redo());
        QVERIFY(board.shown() == drawn);
        board.line({10, 300}, {600, 300});
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown().pixel(300, 300), 0U);
        QVERIFY(qAlpha(board.shown().pixel(300, 30)) != 0);
    }

    void aStepThatFindsMemoryForAPartGoesWithTheStepBefore()
    {
        SquareBoard board;
        board.line({10, 200}, {600, 200});
        const QImage before = board.shown();
        board.line({10, 20}, {600, 20});
        memoryIsShort = true;
        blocksLeft = 3;
        board.line({10, 30}, {600, 30});
        memoryIsShort = false;
        const QImage drawn = board.shown();
        QCOMPARE(board.drawing.history().steps(), 2);
        QVERIFY(board.drawing.undo());
        QVERIFY(board.shown() == before);
        QVERIFY(board.drawing.redo());
        QVERIFY(board.shown() == drawn);
        QVERIFY(!board.drawing.canRedo());
        QVERIFY(board.drawing.undo());
        QVERIFY(board.drawing.undo());
        QVERIFY(!board.drawing.canUndo());
    }

    void aDragWithoutMemoryTakesNothingAway()
    {
        SquareBoard board;
        board.line({10, 20}, {600, 20});
        memoryIsShort = true;
        board.drawing.press(CanvasModes::Line, {10, 30});
        for (int y = 30; y < 60; y += 5) {
            board.drawing.move(CanvasModes::Line, {600, y}, board.style, board.view);
            (void)board.drawing.layer();
        }
        board.drawing.undo();
        QVERIFY(qAlpha(board.shown().pixel(300, 20)) != 0);
    }

    void undoWithoutMemoryLeavesTheDrawing()
    {
        SquareBoard board;
        board.line({10, 20}, {600, 20});
        board.line({10, 40}, {600, 40});
        const QImage drawn = board.shown();
        memoryIsShort = true;
        QVERIFY(!board.drawing.undo());
        memoryIsShort = false;
        QVERIFY(board.shown() == drawn);
        QVERIFY(!board.drawing.canUndo());
    }
};

REGISTER_TEST(LayerHistoryTest)
#include "tst_layer_history.moc"
