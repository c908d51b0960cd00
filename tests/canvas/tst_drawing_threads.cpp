#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/fakes/FakeMainWindow.h"

#include <QtTest>

#include <QRandomGenerator>
#include <QTextEdit>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace
{

/// Delivers frames as a camera does, on a thread of its own, until it is destroyed.
class SteadyFrames
{
public:
    explicit SteadyFrames(ImageCanvas &canvas, bool changesSize)
        : m_thread([this, &canvas, changesSize] { run(canvas, changesSize); })
    {
    }
    ~SteadyFrames()
    {
        m_stop = true;
        m_thread.join();
    }
    SteadyFrames(const SteadyFrames &) = delete;
    SteadyFrames &operator=(const SteadyFrames &) = delete;

    [[nodiscard]] int frames() const { return m_frames; }

private:
    void run(ImageCanvas &canvas, bool changesSize)
    {
        std::vector<unsigned char> pixels(std::size_t{160} * 120 * 4);
        while (!m_stop) {
            const int number = m_frames;
            std::fill(pixels.begin(), pixels.end(), static_cast<unsigned char>(255));
            const bool small = changesSize && number % 16 >= 8;
            canvas.imageCaptured(pixels.data(), small ? 100 : 160, small ? 90 : 120,
                                 number % 3 == 0, number % 2 == 0);
            ++m_frames;
        }
    }

    std::atomic<bool> m_stop{false};
    std::atomic<int> m_frames{0};
    std::thread m_thread;
};

QPoint anyPoint(QRandomGenerator &random)
{
    return {random.bounded(-30, 230), random.bounded(-30, 190)};
}

void dragAnything(ImageCanvas &canvas, QRandomGenerator &random)
{
    canvas.setMouseMode(static_cast<CanvasModes::MouseMode>(random.bounded(10)));
    canvas.penWidth = random.bounded(-1, 13);
    canvas.fillEnabled = random.bounded(2) == 1;
    CanvasMouse::press(canvas, anyPoint(random));
    for (int i = random.bounded(4); i > 0; --i)
        CanvasMouse::move(canvas, anyPoint(random));
    if (random.bounded(8) == 0)
        canvas.undo();
    CanvasMouse::release(canvas, anyPoint(random));
    if (canvas.mouseMode() == CanvasModes::Text)
        QTest::keyClicks(canvas.findChild<QTextEdit *>(), "ab");
}

void changeAnything(ImageCanvas &canvas, QRandomGenerator &random)
{
    switch (random.bounded(15)) {
    case 0:
        canvas.rotate();
        break;
    case 1:
        canvas.rotateRev();
        break;
    case 2:
        canvas.zoomIn();
        break;
    case 3:
        canvas.zoomOut();
        break;
    case 4:
        canvas.zoomReset();
        break;
    case 5:
        canvas.clearPainting();
        break;
    case 6:
        canvas.frozen = random.bounded(2) == 1;
        break;
    case 7:
        canvas.setFontSize(random.bounded(1, 40));
        break;
    case 8:
        canvas.setTextColor(Qt::blue);
        break;
    case 9:
        canvas.setViewport(random.bounded(200), random.bounded(200));
        break;
    case 10:
        canvas.resize(random.bounded(1, 240), random.bounded(1, 200));
        break;
    case 11:
    case 12:
        canvas.undo();
        break;
    case 13:
        canvas.redo();
        break;
    default:
        canvas.endTextEditing();
    }
}

} // namespace

/// Frames keep arriving on another thread while the speaker draws; meant for the thread sanitizer.
class DrawingThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyToolDrawsWhileFramesArrive_data()
    {
        QTest::addColumn<bool>("changesSize");
        QTest::newRow("of one size") << false;
        QTest::newRow("of changing size") << true;
    }

    void everyToolDrawsWhileFramesArrive()
    {
        QFETCH(bool, changesSize);
        MainWindow window;
        ImageCanvas canvas;
        OSDProcessor osd(&window, &canvas);
        canvas.setOsdProcessor(&osd);
        canvas.resize(200, 160);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        QTemporaryDir folder;
        canvas.snapshotFolder = folder.path();

        SteadyFrames frames(canvas, changesSize);
        QRandomGenerator random(5);
        for (int i = 0; i < 250; ++i) {
            dragAnything(canvas, random);
            changeAnything(canvas, random);
            if (i % 60 == 0) {
                canvas.stopSnapshot();
                canvas.snapshot();
            }
            osd.osdZoomIn();
            QCoreApplication::processEvents();
        }
        const int before = frames.frames();
        canvas.frozen = false;
        QTRY_VERIFY_WITH_TIMEOUT(frames.frames() > before + 10, 60000);
        canvas.setOsdProcessor(nullptr);
    }

    void aStrokeIsInTheFrameAfterIt()
    {
        ImageCanvas canvas;
        canvas.resize(160, 120);
        canvas.penColor = Qt::red;
        canvas.setMouseMode(CanvasModes::Freehand);
        SteadyFrames frames(canvas, false);
        QTRY_VERIFY(frames.frames() > 0);
        CanvasMouse::press(canvas, {10, 60});
        for (int x = 20; x < 150; x += 5) {
            CanvasMouse::move(canvas, QPoint(x, 60));
            // One frame may be under way already; the one after it has the stroke.
            const int before = frames.frames();
            QTRY_VERIFY(frames.frames() >= before + 2);
            QCOMPARE(canvas.currentImage().pixelColor(x, 60), QColor(Qt::red));
        }
    }
};

REGISTER_TEST(DrawingThreadsTest)
#include "tst_drawing_threads.moc"
