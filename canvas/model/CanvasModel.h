#pragma once

#include "canvas/drawing/Drawing.h"
#include "canvas/model/OutputFolder.h"
#include "canvas/model/SnapshotClock.h"
#include "canvas/picture/ShownPicture.h"
#include "canvas/picture/ViewGeometry.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

class QTextDocument;
struct PictureSettings;

/// What a canvas holds, apart from its widget: the frame and the picture made from it, the view,
/// the drawing, and the snapshot that is armed.
///
/// Any thread. Each public function takes the one mutex for itself; what runs while it is held
/// belongs to State, which knows no CanvasModel, so that it cannot be taken twice. Nothing here
/// waits for a file or touches a widget.
class CanvasModel
{
public:
    /// A picture that is to be saved if its folder exists; without a picture there is nothing to
    /// save.
    struct Shot {
        FramePtr picture;
        std::shared_ptr<OutputFolder> folder;
    };

    /// The picture that is shown, and a number that grows with every new one.
    struct Shown {
        FramePtr picture;
        std::uint64_t serial = 0;
    };

    /// Reads the settings, which must live longer, whenever it makes a picture.
    explicit CanvasModel(const PictureSettings &settings);

    // Frames. Each of these brings the picture up to date and says whether it is to be saved. A
    // frame that finds no memory is left out. A null or empty one leaves an empty picture.
    [[nodiscard]] Shot take(const QImage &image);
    /// `size` packed pixels: RGB888, or with `rgb32` the 4 bytes of ARGB32; `mirror` takes and
    /// returns them upside down. They are overwritten by the picture that is shown.
    [[nodiscard]] Shot take(void *pixels, QSize size, bool mirror, bool rgb32);
    /// Memory for `size` packed pixels of RGB888. take() keeps it instead of a copy when the
    /// picture is the frame itself; the caller then has no more right to write to it. Null for an
    /// empty size and without memory.
    [[nodiscard]] std::shared_ptr<std::uint8_t> lend(QSize size);
    /// Takes a frame that nobody writes to any more without copying it.
    void take(const FramePtr &frame);
    [[nodiscard]] Shot refresh();
    [[nodiscard]] Shown shown() const;
    /// (0, 0) when there is no picture.
    [[nodiscard]] QSize pictureSize() const;
    /// Whether a source has delivered nothing yet and nobody has drawn.
    [[nodiscard]] bool isUntouched() const { return m_untouched; }
    /// What is shown counts as nothing that a source has delivered; not when it is a standing frame
    /// or somebody has drawn on it.
    void forgetFrames();
    [[nodiscard]] std::int64_t msSinceFrame() const { return m_clock.elapsed() - m_lastFrameMs; }

    // Snapshots
    void arm(const std::shared_ptr<OutputFolder> &folder, const SnapshotClock::Schedule &schedule);
    void disarm();
    [[nodiscard]] bool seriesArmed() const;
    /// Whether a shot is still to be saved now that its folder has answered; disarms what is
    /// thereby done.
    [[nodiscard]] bool claim(const Shot &shot);

    // View
    /// The view's shape with the offset (0, 0); never waits for the mutex.
    [[nodiscard]] ViewGeometry viewShape() const;
    [[nodiscard]] QPointF centerPoint() const;
    void zoom(QPointF centre, int factor);
    /// False, and nothing changed, when the largest scale is reached.
    bool zoomIn();
    void zoomOut();
    void zoomReset();
    void setViewport(QPoint corner);
    // In the coordinates of a widget of the size that goes with the point.
    /// Whole zoom steps about a point, inwards above 0.
    void zoomSteps(int steps, QPointF widgetPoint, QSize widgetSize);
    /// Notes what is seen at that point, and at what scale, for moveView().
    void gripView(QPointF widgetPoint, QSize widgetSize);
    /// Brings that there, at so many times the noted scale.
    void moveView(QPointF widgetPoint, double factor, QSize widgetSize);
    void refit();
    /// Turns the view, and with it the drawing, by a quarter.
    void turn(bool clockwise);

    // Drawing. Points are in the coordinates of a widget of the size that goes with them.
    void press(CanvasModes::MouseMode mode, QPoint widgetPoint, QSize widgetSize);
    void move(CanvasModes::MouseMode mode, QPoint widgetPoint, QSize widgetSize,
              const DragTool::ShapeStyle &style);
    /// Ends the drag. Returns the clip selection in processed-picture coordinates, invalid when
    /// there is none; nothing when no drag was under way.
    std::optional<QRect> release();
    /// Ends the drag, if one is under way, and takes back what it has drawn.
    void cancel();
    /// The clip selection in processed-picture coordinates, null when there is none.
    [[nodiscard]] QRect clipRectangle() const;
    [[nodiscard]] QRectF clippingRect(QSize widgetSize) const;
    /// A copy of that part of the picture; null when it lies outside.
    [[nodiscard]] QImage part(const QRect &picturePart) const;
    void clearDrawing();
    /// Notes where the text that is begun now will stand.
    void placeText(QPoint widgetPoint, QSize widgetSize);
    /// Paints the text there; see Drawing::commitText().
    void commitText(QTextDocument &document, QSize widgetSize);
    /// See Drawing::undo().
    bool undo();
    bool redo();
    /// Neither of these waits for the mutex.
    [[nodiscard]] bool canUndo() const { return m_published.canUndo; }
    [[nodiscard]] bool canRedo() const { return m_published.canRedo; }
    /// Packs some of the undo history; to be called when nothing else is to be done.
    void packHistory();

private:
    /// Copies for callers that must not wait.
    struct Published {
        std::atomic<std::uint64_t> shape{0};
        std::atomic<double> scale{1.0};
        std::atomic<bool> canUndo{false};
        std::atomic<bool> canRedo{false};
    };

    /// Everything that the mutex guards, and what is done while it is held.
    struct State {
        ShownPicture picture;
        ViewGeometry view;
        Drawing drawing;
        /// What lend() gave last, as long as the source has it.
        std::weak_ptr<Frame> lent;
        SnapshotClock snapshotClock;
        std::shared_ptr<OutputFolder> armedFolder;
        /// The size of the last picture that was not empty, in output pixels.
        QSize lastTransformedSize;
        /// What the fingers hold, in rotated-picture coordinates, and the scale when they took it.
        QPointF grippedPoint;
        double grippedScale = 1.0;

        /// Whether the standing frame is kept. The freeze button may be pressed at any moment, so
        /// this is asked once a frame.
        [[nodiscard]] bool holdsInput(const PictureSettings &settings) const;
        void takeInput(const FramePtr &frame, QSize size);
        /// The effect and the mask may be chosen at any moment, so they are asked for once a frame.
        [[nodiscard]] FramePipeline::Settings steps(const PictureSettings &settings) const;
        /// The frame that was lent, if those are its pixels and they need no step; else null.
        [[nodiscard]] FramePtr untouched(const void *pixels, QSize size,
                                         const FramePipeline::Settings &steps);
        [[nodiscard]] bool renewPicture(const FramePipeline::Settings &steps);
        [[nodiscard]] Shot dueShot(std::int64_t nowMs) const;
        [[nodiscard]] QPoint picturePoint(QPoint widgetPoint, QSize widgetSize) const;
        [[nodiscard]] QPointF exactPicturePoint(QPointF widgetPoint, QSize widgetSize) const;
        void publishTo(Published &published) const;
    };

    const PictureSettings &m_settings;
    QElapsedTimer m_clock; ///< Started once by the constructor.
    std::atomic<std::int64_t> m_lastFrameMs{0};
    std::atomic<bool> m_untouched{true};
    Published m_published;

    /// Guards m_state. Never held while a file is written, a widget is touched or the indications
    /// are painted.
    mutable std::mutex m_mutex;
    State m_state;
};
