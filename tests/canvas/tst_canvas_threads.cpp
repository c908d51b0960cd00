#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace
{

/// Hands frames to the canvas on a thread of its own, as the camera library does.
class UnlikeFrames
{
public:
    UnlikeFrames(ImageCanvas &canvas, std::vector<QSize> sizes)
        : m_thread([this, &canvas, sizes = std::move(sizes)] { run(canvas, sizes); })
    {
    }
    ~UnlikeFrames() { stop(); }
    Q_DISABLE_COPY(UnlikeFrames)

    void stop()
    {
        m_stopped = true;
        if (m_thread.joinable())
            m_thread.join();
    }
    [[nodiscard]] int delivered() const { return m_delivered; }

private:
    void run(ImageCanvas &canvas, const std::vector<QSize> &sizes)
    {
        std::vector<uchar> bytes;
        for (std::size_t i = 0; !m_stopped; ++i) {
            const QSize size = sizes[i / 7 % sizes.size()];
            const int pixelBytes = i % 5 == 0 ? 4 : 3;
            bytes.assign(static_cast<std::size_t>(size.width()) *
                             static_cast<std::size_t>(size.height() * pixelBytes),
                         static_cast<uchar>(i));
            if (i % 11 == 0)
                canvas.imageCaptured(QImage(size, QImage::Format_RGB888));
            else
                canvas.imageCaptured(bytes.data(), size.width(), size.height(), i % 3 == 0,
                                     pixelBytes == 4);
            ++m_delivered;
        }
    }

    std::atomic<bool> m_stopped{false};
    std::atomic<int> m_delivered{0};
    std::thread m_thread;
};

bool showSmall(ImageCanvas &canvas)
{
    canvas.resize(64, 48);
    canvas.show();
    return QTest::qWaitForWindowExposed(&canvas);
}

/// Counts what a canvas is sent.
class PaintCounter : public QObject
{
public:
    int paints = 0;
    int metaCalls = 0;

    bool eventFilter(QObject *, QEvent *event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        metaCalls += event->type() == QEvent::MetaCall ? 1 : 0;
        return false;
    }
};

/// Calls every public operation once; each takes the lock for itself.
void callEverything(ImageCanvas &canvas, int round, const QString &folder)
{
    canvas.effectMode = static_cast<ImageCanvas::EffectMode>(round % 4);
    canvas.maskMode = static_cast<ImageCanvas::MaskMode>(round % 5);
    canvas.frozen = round % 6 == 0;
    canvas.startAutoRefresh();
    canvas.autoRefresh();
    canvas.stopAutoRefresh();
    canvas.setDrawingBoardMode(round % 2 == 0);
    if (round % 10 == 0)
        canvas.fillCanvas(Qt::green);
    (void)canvas.boardColor();
    (void)canvas.currentImage().copy();
    (void)canvas.pictureSize();
    canvas.snapshotFolder = folder;
    canvas.snapshotMode = static_cast<ImageCanvas::SnapshotMode>(round % 2);
    if (round % 8 == 0)
        canvas.snapshot();
    (void)canvas.seriesArmed();
    if (round % 8 == 2)
        canvas.stopSnapshot();
    (void)canvas.actualWidth();
    (void)canvas.actualHeight();
    (void)canvas.transformedWidth();
    (void)canvas.transformedHeight();
    (void)canvas.minimumScale();
    (void)canvas.zoomScale();
    (void)canvas.rotation();
    (void)canvas.centerPoint();
    canvas.zoomIn();
    canvas.setViewport(round, round);
    canvas.rotate();
    canvas.zoomOut();
    canvas.rotateRev();
    canvas.zoom({3, 3}, round % 7);
    canvas.zoomReset();
    (void)canvas.transformMousePoint({round, round});
    (void)canvas.clippingRect();
    (void)canvas.clipRectangle();
    canvas.setMouseMode(static_cast<ImageCanvas::MouseMode>(round % 10));
    (void)canvas.mouseMode();
    canvas.setTextColor(Qt::red);
    canvas.setFontFace("Arial");
    canvas.setFontSize(18);
    canvas.setTextFormat();
    canvas.endTextEditing();
    canvas.clearPainting();
    canvas.setOsdProcessor(nullptr);
    canvas.resize(150 + round % 3, 100);
    canvas.repaint();
}

} // namespace

/// CTest ends this test after a minute, because taking a lock twice never returns.
class CanvasThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyOperationReturns()
    {
        QTemporaryDir folder;
        ImageCanvas canvas;
        canvas.show();
        callEverything(canvas, 0, folder.path());
        canvas.imageCaptured(QImage(64, 48, QImage::Format_RGB888));
        callEverything(canvas, 1, folder.path());
        uchar pixels[4 * 4 * 4] = {};
        canvas.imageCaptured(pixels, 4, 4, true, true);
        callEverything(canvas, 2, folder.path());
        canvas.imageCaptured(QImage());
        callEverything(canvas, 3, folder.path());
    }

    void framesArriveWhileEveryOperationRuns()
    {
        QTemporaryDir folder;
        ImageCanvas canvas;
        canvas.show();
        UnlikeFrames frames(canvas, {{64, 48}, {64, 48}, {48, 64}, {33, 21}, {1, 1}, {0, 0}});
        for (int round = 0; round < 200 || frames.delivered() < 200; ++round) {
            callEverything(canvas, round, folder.path());
            QCoreApplication::processEvents();
        }
        frames.stop();
        QVERIFY(frames.delivered() >= 200);
    }

    void theBufferComesBackAsShownWhileTheFreezeButtonIsPressed()
    {
        QTemporaryDir folder;
        ImageCanvas canvas;
        // A series that waits makes a frame take longer under the lock.
        canvas.snapshotFolder = folder.path();
        canvas.snapshotMode = ImageCanvas::Continuous;
        canvas.snapshotInterval = 1000000;
        canvas.snapshot();
        std::atomic<bool> stopped{false};
        std::thread button([&] {
            while (!stopped)
                canvas.frozen = !canvas.frozen;
        });
        std::vector<uchar> bytes(std::size_t{64} * 48 * 3);
        int different = 0;
        for (int i = 0; i < 100000; ++i) {
            std::fill(bytes.begin(), bytes.end(), static_cast<uchar>(i));
            canvas.imageCaptured(bytes.data(), 64, 48, false, false);
            different += bytes[0] != *canvas.currentImage().constBits() ? 1 : 0;
        }
        stopped = true;
        button.join();
        QCOMPARE(different, 0);
    }

    void aFrameOnAnotherThreadIsPainted()
    {
        ImageCanvas canvas;
        QVERIFY(showSmall(canvas));
        QImage red(64, 48, QImage::Format_RGB888);
        red.fill(Qt::red);
        std::thread thread([&] { canvas.imageCaptured(red); });
        thread.join();
        QTRY_COMPARE(canvas.grab().toImage().pixelColor(30, 20), QColor(Qt::red));
    }

    void everyFrameOfAnotherThreadAsksForItsOwnRepaint()
    {
        ImageCanvas canvas;
        QVERIFY(showSmall(canvas));
        PaintCounter counter;
        canvas.installEventFilter(&counter);
        for (int i = 0; i < 30; ++i) {
            const int before = counter.paints;
            std::thread thread(
                [&] { canvas.imageCaptured(QImage(64, 48, QImage::Format_RGB888)); });
            thread.join();
            QTRY_VERIFY(counter.paints > before);
        }
    }

    void repaintsThatWaitAreAskedForOnce()
    {
        ImageCanvas canvas;
        QVERIFY(showSmall(canvas));
        PaintCounter counter;
        canvas.installEventFilter(&counter);
        std::thread thread([&] {
            for (int i = 0; i < 100; ++i)
                canvas.imageCaptured(QImage(64, 48, QImage::Format_RGB888));
        });
        thread.join();
        // A hundred frames before the window could paint are one request.
        QCoreApplication::sendPostedEvents(&canvas, QEvent::MetaCall);
        QCOMPARE(counter.metaCalls, 1);
    }

    void theCanvasMayGoWhileARepaintIsPosted()
    {
        auto canvas = std::make_unique<ImageCanvas>();
        std::thread thread([&] { canvas->imageCaptured(QImage(64, 48, QImage::Format_RGB888)); });
        thread.join();
        canvas.reset();
        QCoreApplication::processEvents();
    }
};

REGISTER_TEST(CanvasThreadsTest)
#include "tst_canvas_threads.moc"
