#pragma once

#include "canvas/OutputFolder.h"
#include "canvas/SnapshotClock.h"
#include "canvas/TextAnnotation.h"
#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/drawing/TextAnchor.h"
#include "canvas/picture/FramePipeline.h"
#include "canvas/picture/ScaledPicture.h"
#include "canvas/picture/ViewGeometry.h"
#include "settings/CanvasModes.h"
#include "sources/ICaptureCB.h"

#include <QColor>
#include <QDateTime>
#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <atomic>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>

class OSDProcessor;

/// The picture on the wall: takes frames from any thread, runs them through its pipeline, shows,
/// saves and hands back the result, and lets the speaker draw on it.
///
/// Every public operation takes the canvas lock at most once and calls no other public operation
/// while it holds it. From another thread than the GUI's, repaints and indications are posted.
class ImageCanvas : public QWidget, public ICaptureCB, public CanvasModes
{
    Q_OBJECT

public:
    explicit ImageCanvas(QWidget *parent = nullptr);
    ~ImageCanvas() override;

    // Frames ------------------------------------------------------------------------------------
    void imageCaptured(const QImage &image) override;
    void imageCaptured(void *pixels, int width, int height, bool mirror, bool rgb32) override;
    void startAutoRefresh() override;
    void stopAutoRefresh() override;

    /// Makes the board a 1280 x 720 picture of that colour and remembers the colour.
    void fillCanvas(const QColor &color);
    [[nodiscard]] QColor boardColor() const { return m_boardColor; }
    void setDrawingBoardMode(bool on);
    /// A copy of the picture as shown, saved and printed; null before the first one.
    [[nodiscard]] QImage currentImage() const;
    [[nodiscard]] QSize pictureSize() const;

    // Snapshots ---------------------------------------------------------------------------------
    /// A picture that could not be written.
    struct SnapshotFailure {
        QDateTime time;
        /// The file, or the folder that did not answer.
        QString path;
        /// In the system's words.
        QString reason;
    };

    /// Arms a shot or a series with the public snapshot fields, if the folder exists. While the
    /// folder does not answer, the shot waits, armed.
    void snapshot();
    void stopSnapshot();
    /// Whether a continuous series is armed.
    [[nodiscard]] bool seriesArmed() const;
    /// The last one since the program began. GUI thread.
    [[nodiscard]] const std::optional<SnapshotFailure> &lastSnapshotFailure() const
    {
        return m_snapshotFailure;
    }

    // View --------------------------------------------------------------------------------------
    [[nodiscard]] int actualWidth() const;
    [[nodiscard]] int actualHeight() const;
    [[nodiscard]] int transformedWidth() const;
    [[nodiscard]] int transformedHeight() const;
    [[nodiscard]] double minimumScale() const;
    [[nodiscard]] double zoomScale() const;
    /// Quarter turns clockwise, 0 to 3.
    [[nodiscard]] int rotation() const;
    /// The view's centre in rotated-picture coordinates.
    [[nodiscard]] QPointF centerPoint() const;
    void zoom(const QPointF &centre, int factor);
    void zoomIn();
    void zoomOut();
    void zoomReset();
    /// Moves the view's top left corner, in output pixels, as far as the picture reaches.
    void setViewport(int x, int y);
    void rotate();
    void rotateRev();
    /// Widget coordinates to processed-picture coordinates.
    [[nodiscard]] QPoint transformMousePoint(QPoint widgetPoint) const;
    /// The clip selection in widget coordinates.
    [[nodiscard]] QRectF clippingRect() const;
    /// The clip selection in processed-picture coordinates, null when there is none.
    [[nodiscard]] QRect clipRectangle() const;

    // Drawing and text --------------------------------------------------------------------------
    /// Any mode but Text commits a text that is being edited.
    void setMouseMode(MouseMode mode);
    [[nodiscard]] MouseMode mouseMode() const { return m_mouseMode; }
    void clearPainting();
    /// The format acts on the selection of a text that is being edited, or on what is typed next.
    void setTextColor(const QColor &color);
    void setFontFace(const QString &face);
    /// Sizes below 1 are ignored; letters are 1000 points at most.
    void setFontSize(int points);
    [[nodiscard]] QColor textColor() const { return m_text.color(); }
    [[nodiscard]] QString fontFace() const { return m_text.fontFace(); }
    [[nodiscard]] int fontSize() const { return m_text.fontSize(); }
    void setTextFormat();
    /// Paints the text that is being edited into the drawing, which Escape does too; nothing when
    /// there is none.
    void endTextEditing();

    // Indications -------------------------------------------------------------------------------
    void setOsdProcessor(OSDProcessor *processor);

    // Written by the main window and the tool windows on the GUI thread; the frame thread reads
    // the atomics directly and the snapshot fields only through the copy that snapshot() takes.
    std::atomic<MaskMode> maskMode{MaskNone};
    std::atomic<EffectMode> effectMode{EffectColor};
    std::atomic<bool> frozen{false};
    SnapshotMode snapshotMode = Single;
    QString snapshotFolder;
    /// Seconds between two pictures of a series.
    unsigned long long snapshotInterval = 0;
    /// Seconds after which a series ends; all bits set is never.
    unsigned long long seriesLimit = std::numeric_limits<unsigned long long>::max();
    QColor penColor = Qt::black;
    int penWidth = 3;
    bool fillEnabled = false;
    QColor fillColor = Qt::black;

public slots:
    /// Shows changes of effect, mask, view or drawing on the standing picture. GUI thread.
    void autoRefresh();

signals:
    /// A clip has been copied to the clipboard.
    void clipDone();
    /// lastSnapshotFailure() has changed. GUI thread.
    void snapshotFailed(const QString &path, const QString &reason);

protected:
    // The left button drives the tools, also when a pen or a finger stands for it.
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private slots:
    void refreshWhenIdle();
    void showSnapshotTaken();
    void keepSnapshotFailure(const QString &path, const QString &reason);
    void updatePosted();

private:
    static constexpr int REFRESH_INTERVAL_MS = 40;

    /// Everything that a result was made from; while it stays the same, so does the result.
    struct ResultKey {
        std::uint64_t inputSerial = 0;
        ViewGeometry view;
        EffectMode effect = EffectColor;
        MaskMode mask = MaskNone;
        std::uint64_t layerRevision = 0;

        friend bool operator==(const ResultKey &a, const ResultKey &b)
        {
            return a.inputSerial == b.inputSerial && a.view == b.view && a.effect == b.effect &&
                   a.mask == b.mask && a.layerRevision == b.layerRevision;
        }
    };

    /// A picture to be saved once the lock is released, if its folder is there; null is none.
    struct Shot {
        FramePtr picture;
        std::shared_ptr<OutputFolder> folder;
    };

    // With the lock held.
    // Null for an empty frame and without memory.
    [[nodiscard]] FramePtr copyIn(const void *pixels, QSize size, bool mirror, bool rgb32);
    [[nodiscard]] FramePtr copyIn(const QImage &image);
    /// Whether the standing input holds and frames that arrive are ignored. The freeze button may
    /// be pressed at any moment, so that a frame asks once.
    [[nodiscard]] bool holdsInput() const;
    /// A null frame is an empty one, or one that found no memory: that one is left out, and the
    /// standing input stays.
    void takeInput(const FramePtr &frame, QSize size);
    /// False when there is no memory for it: the last result stays, and the next call tries again.
    [[nodiscard]] bool renewResult();
    /// The drawing with the shape that is being dragged.
    [[nodiscard]] AnnotationLayer &drawnLayer();
    [[nodiscard]] ResultKey currentKey() const;
    [[nodiscard]] QSize resultSize() const;
    [[nodiscard]] Shot dueShot() const;
    void copyOut(void *pixels, QSize size, bool mirror, bool rgb32);
    void publishView();
    template <typename Change>
    void changeView(Change change);

    // Without the lock.
    void take(const Shot &shot);
    void save(const Shot &shot);
    void reportSnapshotFailure(const QString &path, const QString &reason);
    void turn(bool clockwise);
    void requestRepaint();
    void endDrag(QPoint widgetPoint);
    void copyClip(const QRect &selection);
    void openTextEditor(QPoint widgetPoint);
    void paintPicture(QPainter *painter);

    [[nodiscard]] ViewGeometry publishedView() const;
    [[nodiscard]] bool onGuiThread() const;

    /// Guards the members from here to the next group against the frame thread; never held
    /// while a file is written, a widget is touched or the indications are painted.
    mutable std::mutex m_lock;
    FramePtr m_input;
    /// Counts stored inputs.
    std::uint64_t m_inputSerial = 0;
    FramePtr m_result;
    std::uint64_t m_resultSerial = 0;
    ResultKey m_resultKey;
    FramePipeline m_pipeline;
    ViewGeometry m_view;
    AnnotationLayer m_layer;
    TextAnchor m_textAnchor;
    SnapshotClock m_snapshotClock;
    std::shared_ptr<OutputFolder> m_armedFolder;
    DragTool m_tools;

    // Readable from any thread without the lock.
    std::atomic<std::uint64_t> m_publishedShape{0};
    std::atomic<double> m_publishedScale{1.0};
    std::atomic<std::int64_t> m_lastFrameMs{0};
    std::atomic<bool> m_updatePosted{false};
    QElapsedTimer m_clock; ///< Started once by the constructor.

    // GUI thread only.
    QPointer<OSDProcessor> m_osd;
    std::optional<SnapshotFailure> m_snapshotFailure;
    QTimer m_refreshTimer;
    QTimer m_idleTimer;
    /// Runs from a stroke over a standing picture to the refresh that shows it.
    QTimer m_strokeTimer;
    ScaledPicture m_scaledPicture;
    bool m_drawingBoardMode = false;
    QColor m_boardColor = Qt::white;
    MouseMode m_mouseMode = Hand;
    TextAnnotation m_text;
};
