// How soon a stroke is on the screen, from the mouse event to the end of the painting that shows
// it, on a canvas of 1000 x 670:
//   bench_stroke_latency still SECONDS: over a standing picture of 1920x1080
//   bench_stroke_latency shape SECONDS: how soon a click is answered after a filled ellipse was
//       dragged over 4000x3000 by a mouse of 740 points a second
//   bench_stroke_latency live SECONDS: over the camera's 1920x1080 at 30 frames a second
//   bench_stroke_latency recording SECONDS FILE: the same while it is recorded
//   bench_stroke_latency pinch SECONDS: two fingers that zoom, 60 events a second, over the
//       camera's
//   bench_stroke_latency pen SECONDS: a pen of 200 points a second, over the camera's
// All but the first two need the camera on the bus (virtualcamera-run).
#include "app/Platform.h"
#include "benchmarks/EventLoop.h"
#include "canvas/ImageCanvas.h"
#include "sources/LiveSource.h"
#include "sources/recording/CaptureClock.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTabletEvent>
#include <QThread>
#include <QTimer>
#include <QTouchDevice>
#include <QTouchEvent>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <deque>
#include <thread>
#include <vector>

namespace
{

constexpr QSize SIZE(1920, 1080);
/// A photograph of twelve megapixels.
constexpr QSize LARGE(4000, 3000);
constexpr QSize CANVAS(1000, 670);
constexpr double WARM_UP_SECONDS = 3;
constexpr double LAST_SECONDS = 0.5;
/// No multiple of a frame's time, so that the strokes meet the frames at every phase.
constexpr int STROKE_INTERVAL_MS = 47;
constexpr int PEN_INTERVAL_MS = 5;

/// A canvas that notes when each point of a stroke is painted.
class TimedCanvas : public ImageCanvas, private PictureTap
{
public:
    TimedCanvas() { setPictureTap(this); }
    ~TimedCanvas() override { setPictureTap(nullptr); }

    using ImageCanvas::imageCaptured;
    void imageCaptured(void *pixels, int width, int height, bool mirror, bool rgb32) override
    {
        ++m_frames;
        m_stepsBeforeFrame = m_steps.load();
        ImageCanvas::imageCaptured(pixels, width, height, mirror, rgb32);
    }

    /// Any thread. The moment counts from here, the way through the event queue included.
    void post(QEvent::Type type, QPoint point, Qt::MouseButton button)
    {
        auto *event = new QMouseEvent(type, point, button, Qt::LeftButton, Qt::NoModifier);
        event->setTimestamp(static_cast<ulong>(captureMicroseconds()));
        QCoreApplication::postEvent(this, event);
    }

    /// A pen that is down. Any thread.
    void postPen(QEvent::Type type, QPoint point)
    {
        const Qt::MouseButton tip = type == QEvent::TabletPress ? Qt::LeftButton : Qt::NoButton;
        auto *event =
            new QTabletEvent(type, point, point, QTabletEvent::Stylus, QTabletEvent::Pen, 0.5, 0, 0,
                             0.0, 0.0, 0, Qt::NoModifier, 1, tip, Qt::LeftButton);
        event->setTimestamp(static_cast<ulong>(captureMicroseconds()));
        QCoreApplication::postEvent(this, event);
    }

    /// Two fingers that far apart, about the middle of the canvas. Any thread.
    void postFingers(QEvent::Type type, Qt::TouchPointState state, double apart)
    {
        QList<QTouchEvent::TouchPoint> points;
        for (const int id : {0, 1}) {
            QTouchEvent::TouchPoint point(id);
            point.setPos(QPointF(CANVAS.width() + (id == 0 ? -apart : apart), CANVAS.height()) / 2);
            point.setState(state);
            points << point;
        }
        auto *event = new QTouchEvent(type, &m_screen, Qt::NoModifier, state, points);
        event->setTimestamp(static_cast<ulong>(captureMicroseconds()));
        QCoreApplication::postEvent(this, event);
    }

    void reset() { m_latenciesMs.clear(), m_framesLate.clear(), m_pending.clear(); }
    /// Points and steps that no painting has shown yet.
    [[nodiscard]] std::size_t missing() const { return m_pending.size() + m_pendingSteps.size(); }
    [[nodiscard]] const std::vector<double> &latenciesMs() const { return m_latenciesMs; }
    /// Frames that began between a point and the painting that showed it.
    [[nodiscard]] const std::vector<int> &framesLate() const { return m_framesLate; }

    /// How long each press waited.
    [[nodiscard]] const std::vector<double> &pressLatenciesMs() const { return m_pressesMs; }

protected:
    bool event(QEvent *event) override
    {
        const bool taken = ImageCanvas::event(event);
        if (event->type() == QEvent::TouchUpdate) {
            const auto posted = static_cast<const QTouchEvent *>(event)->timestamp();
            m_pendingSteps.push_back({++m_steps, static_cast<qint64>(posted), m_frames.load()});
        }
        return taken;
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        ImageCanvas::mousePressEvent(event);
        const qint64 posted = static_cast<qint64>(event->timestamp());
        m_pressesMs.push_back(static_cast<double>(captureMicroseconds() - posted) / 1e3);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        ImageCanvas::mouseMoveEvent(event);
        if (mouseMode() == CanvasModes::Freehand)
            expect(event->pos(), *event);
    }

    void tabletEvent(QTabletEvent *event) override
    {
        ImageCanvas::tabletEvent(event);
        if (event->type() == QEvent::TabletMove)
            expect(event->pos(), *event);
    }

    void paintEvent(QPaintEvent *event) override
    {
        // What is painted is the current picture or a newer one.
        const QImage picture = m_pending.empty() ? QImage() : currentImage();
        const int steps = m_stepsInPicture;
        ImageCanvas::paintEvent(event);
        const qint64 now = captureMicroseconds();
        while (!m_pendingSteps.empty() && m_pendingSteps.front().number <= steps) {
            const Step step = m_pendingSteps.front();
            m_pendingSteps.pop_front();
            m_latenciesMs.push_back(static_cast<double>(now - step.microseconds) / 1e3);
            m_framesLate.push_back(m_frames - step.frames);
        }
        const auto shown = [&](const Point &point) {
            if (picture.pixelColor(point.picturePoint) != penColor)
                return false;
            m_latenciesMs.push_back(static_cast<double>(now - point.microseconds) / 1e3);
            m_framesLate.push_back(m_frames - point.frames);
            return true;
        };
        m_pending.erase(std::remove_if(m_pending.begin(), m_pending.end(), shown), m_pending.end());
    }

private:
    /// Comes before the canvas asks for its repaint.
    void pictureShown(const CanvasModel::Shown &) override
    {
        // The canvas makes a picture of its own between two frames, with all that was done by then.
        const bool isOfFrame = QThread::currentThread() != thread();
        const int steps = isOfFrame ? m_stepsBeforeFrame : m_steps;
        int before = m_stepsInPicture;
        while (before < steps && !m_stepsInPicture.compare_exchange_weak(before, steps)) {
        }
    }

    void expect(QPoint point, const QInputEvent &event)
    {
        m_pending.push_back(
            {transformMousePoint(point), static_cast<qint64>(event.timestamp()), m_frames.load()});
    }

    struct Point {
        QPoint picturePoint;
        qint64 microseconds;
        int frames;
    };

    /// One change of the view.
    struct Step {
        int number;
        qint64 microseconds;
        int frames;
    };

    std::atomic<int> m_frames{0};
    std::atomic<int> m_steps{0};
    std::atomic<int> m_stepsBeforeFrame{0};
    /// How many of them were made before the picture that was made last.
    std::atomic<int> m_stepsInPicture{0};
    std::deque<Step> m_pendingSteps;
    QTouchDevice m_screen;
    std::vector<Point> m_pending;
    std::vector<double> m_latenciesMs;
    std::vector<double> m_pressesMs;
    std::vector<int> m_framesLate;
};

/// A hand that draws: one stroke over the whole picture, to and fro, never twice over a point.
class Hand
{
public:
    Hand(TimedCanvas &canvas, bool holdsPen)
        : m_thread([this, &canvas, holdsPen] { draw(canvas, holdsPen); })
    {
    }
    ~Hand()
    {
        m_stop = true;
        m_thread.join();
    }

private:
    void draw(TimedCanvas &canvas, bool holdsPen)
    {
        const std::chrono::milliseconds interval(holdsPen ? PEN_INTERVAL_MS : STROKE_INTERVAL_MS);
        QPoint point(20, 70);
        int step = 12;
        if (holdsPen)
            canvas.postPen(QEvent::TabletPress, point);
        else
            canvas.post(QEvent::MouseButtonPress, point, Qt::LeftButton);
        auto next = std::chrono::steady_clock::now();
        while (!m_stop) {
            std::this_thread::sleep_until(next += interval);
            if (point.x() + step < 20 || point.x() + step > CANVAS.width() - 20) {
                step = -step;
                point.ry() += 12;
            } else {
                point.rx() += step;
            }
            if (holdsPen)
                canvas.postPen(QEvent::TabletMove, point);
            else
                canvas.post(QEvent::MouseMove, point, Qt::NoButton);
        }
    }

    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

/// Two fingers that go apart and together again, from the whole picture to the largest scale.
class PinchingHand
{
public:
    explicit PinchingHand(TimedCanvas &canvas)
        : m_thread([this, &canvas] { pinch(canvas); })
    {
    }
    ~PinchingHand()
    {
        m_stop = true;
        m_thread.join();
    }

private:
    void pinch(TimedCanvas &canvas)
    {
        constexpr auto INTERVAL = std::chrono::microseconds(16667);
        constexpr double CLOSE = 120;
        canvas.postFingers(QEvent::TouchBegin, Qt::TouchPointPressed, CLOSE);
        auto next = std::chrono::steady_clock::now();
        for (int i = 1; !m_stop; ++i) {
            std::this_thread::sleep_until(next += INTERVAL);
            const int phase = i % 120;
            canvas.postFingers(QEvent::TouchUpdate, Qt::TouchPointMoved,
                               CLOSE * (1.0 + (phase < 60 ? phase : 120 - phase) / 12.0));
        }
        canvas.postFingers(QEvent::TouchEnd, Qt::TouchPointReleased, CLOSE);
    }

    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

int report(const char *work, const TimedCanvas &canvas)
{
    std::vector<double> times = canvas.latenciesMs();
    std::vector<int> frames = canvas.framesLate();
    if (times.empty())
        return 1;
    std::sort(times.begin(), times.end());
    std::sort(frames.begin(), frames.end());
    const auto at = [](const auto &sorted, double part) {
        return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
    };
    const auto next = std::upper_bound(frames.begin(), frames.end(), 1) - frames.begin();
    std::printf("%s: %zu points, %zu not shown; from the hand to the screen median %.1f ms, p99 "
                "%.1f ms, worst %.1f ms; %.1f %% with the next frame or before, the latest after "
                "%d frames\n",
                work, times.size(), canvas.missing(), at(times, 0.5), at(times, 0.99), times.back(),
                100.0 * static_cast<double>(next) / static_cast<double>(frames.size()),
                frames.back());
    return 0;
}

int measure(const char *work, TimedCanvas &canvas, double seconds)
{
    runFor(WARM_UP_SECONDS);
    canvas.reset();
    if (qstrcmp(work, "pinch") == 0) {
        const PinchingHand hand(canvas);
        runFor(seconds);
    } else {
        const Hand hand(canvas, qstrcmp(work, "pen") == 0);
        runFor(seconds);
    }
    // What was drawn last is shown as well.
    runFor(LAST_SECONDS);
    return report(work, canvas);
}

/// A hand that drags a shape with a fast mouse, lets go and clicks at once.
int measureShape(CanvasModes::MouseMode shape, TimedCanvas &canvas, double seconds)
{
    constexpr double POINTS_A_SECOND = 740;
    canvas.setMouseMode(shape);
    canvas.fillEnabled = true;
    runFor(WARM_UP_SECONDS);
    std::thread hand([&canvas, seconds] {
        const auto points = static_cast<int>(seconds * POINTS_A_SECOND);
        const auto start = std::chrono::steady_clock::now();
        canvas.post(QEvent::MouseButtonPress, {20, 20}, Qt::LeftButton);
        for (int i = 0; i < points; ++i) {
            std::this_thread::sleep_until(start + i * std::chrono::microseconds(1351));
            canvas.post(QEvent::MouseMove, {300 + i % 650, 200 + i % 430}, Qt::NoButton);
        }
        canvas.post(QEvent::MouseButtonRelease, {900, 600}, Qt::LeftButton);
        canvas.post(QEvent::MouseButtonPress, {900, 600}, Qt::LeftButton);
    });
    while (canvas.pressLatenciesMs().size() < 2)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    hand.join();
    std::printf("shape: %.0f points, the next click answered after %.1f ms\n",
                seconds * POINTS_A_SECOND, canvas.pressLatenciesMs().back());
    return 0;
}

int measureLive(const char *work, TimedCanvas &canvas, double seconds, const QString &movie)
{
    LiveSource source(&canvas, SIZE, SIZE, nullptr);
    while (!source.running())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (!movie.isEmpty())
        source.startRecord(movie);
    const int result = measure(work, canvas, seconds);
    if (!movie.isEmpty())
        source.stopRecord();
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    preparePlatform();
    QApplication app(argc, argv);
    const QByteArray work = argc >= 3 ? argv[1] : "";
    const double seconds = argc >= 3 ? QByteArray(argv[2]).toDouble() : 0;
    if (seconds <= 0)
        return 2;
    TimedCanvas canvas;
    canvas.resize(CANVAS);
    canvas.setMouseMode(CanvasModes::Freehand);
    canvas.penColor = Qt::red;
    canvas.show();
    if (work == "live" || work == "pinch" || work == "pen" || (work == "recording" && argc == 4))
        return measureLive(argv[1], canvas, seconds, QString::fromLocal8Bit(argv[3]));
    if (work != "still" && work != "shape")
        return 2;
    QImage picture(work == "shape" ? LARGE : SIZE, QImage::Format_RGB888);
    picture.fill(Qt::white);
    canvas.ImageCanvas::imageCaptured(picture);
    canvas.startAutoRefresh();
    if (work == "shape")
        return measureShape(CanvasModes::Circle, canvas, seconds);
    return measure(argv[1], canvas, seconds);
}
