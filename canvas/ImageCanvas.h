#pragma once

#include "canvas/PicturePainter.h"
#include "canvas/PictureTap.h"
#include "canvas/RefreshTimers.h"
#include "canvas/TextAnnotation.h"
#include "canvas/model/CanvasModel.h"
#include "canvas/model/PictureSettings.h"
#include "sources/ICaptureCB.h"

#include <QColor>
#include <QDateTime>
#include <QImage>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QString>
#include <QWidget>

#include <atomic>
#include <limits>
#include <memory>
#include <optional>

class CanvasStrokes;
class OSDProcessor;
class ToolPointer;

/// The widget that shows the picture. It hands frames to its model, paints and saves the picture
/// that is made from them, writes it back to the caller, and turns mouse events into drawing.
///
/// Frames may come from any thread; what they ask of the widget is posted to the GUI thread, where
/// everything else is called. The model alone holds the lock.
class ImageCanvas : public QWidget, public ICaptureCB, public PictureSettings
{
    Q_OBJECT

public:
    explicit ImageCanvas(QWidget *parent = nullptr);
    ~ImageCanvas() override;

    // Frames ------------------------------------------------------------------------------------
    void imageCaptured(const QImage &image) override;
    void imageCaptured(void *pixels, int width, int height, bool mirror, bool rgb32) override;
    [[nodiscard]] std::shared_ptr<std::uint8_t> memoryForFrame(int width, int height) override;
    void startAutoRefresh() override;
    void stopAutoRefresh() override;

    /// Makes the board a 1280 x 720 picture of that colour and remembers the colour.
    void fillCanvas(const QColor &color);
    [[nodiscard]] QColor boardColor() const { return m_boardColor; }
    void setDrawingBoardMode(bool on);
    /// A copy of the picture as shown, saved and printed; null before the first one.
    [[nodiscard]] QImage currentImage() const;
    /// Whether there is nothing to be seen: no frame has come, not even since forgetFrames(), and
    /// nobody has drawn.
    [[nodiscard]] bool isUntouched() const { return m_model.isUntouched(); }
    /// The source has taken its picture away: the canvas counts as untouched until the next one,
    /// unless somebody has drawn or a frame is frozen.
    void forgetFrames() { m_model.forgetFrames(); }
    [[nodiscard]] QSize pictureSize() const { return m_model.pictureSize(); }

    // Snapshots ---------------------------------------------------------------------------------
    /// A picture that could not be written.
    struct SnapshotFailure {
        QDateTime time;
        /// The file, or the folder that did not answer.
        QString path;
        /// The reason in the system's words.
        QString reason;
    };

    /// Arms a shot or a series with the public snapshot fields, if the folder exists. While the
    /// folder does not answer, the shot waits, armed.
    void snapshot();
    void stopSnapshot() { m_model.disarm(); }
    /// Whether a continuous series is armed.
    [[nodiscard]] bool seriesArmed() const { return m_model.seriesArmed(); }
    /// The last failure since the program started. GUI thread.
    [[nodiscard]] const std::optional<SnapshotFailure> &lastSnapshotFailure() const
    {
        return m_snapshotFailure;
    }

    // View --------------------------------------------------------------------------------------
    /// Pixels of the frame after its quarter turns.
    [[nodiscard]] int actualWidth() const { return m_model.viewShape().rotatedSize().width(); }
    [[nodiscard]] int actualHeight() const { return m_model.viewShape().rotatedSize().height(); }
    /// The same in output pixels.
    [[nodiscard]] int transformedWidth() const
    {
        return m_model.viewShape().transformedSize().width();
    }
    [[nodiscard]] int transformedHeight() const
    {
        return m_model.viewShape().transformedSize().height();
    }
    [[nodiscard]] double minimumScale() const { return m_model.viewShape().minimumScale(); }
    [[nodiscard]] double zoomScale() const { return m_model.viewShape().scale(); }
    /// Quarter turns clockwise, 0 to 3.
    [[nodiscard]] int rotation() const { return m_model.viewShape().rotation(); }
    /// The view's centre in rotated-picture coordinates.
    [[nodiscard]] QPointF centerPoint() const { return m_model.centerPoint(); }
    void zoom(const QPointF &centre, int factor) { m_model.zoom(centre, factor); }
    void zoomIn();
    void zoomOut();
    void zoomReset() { m_model.zoomReset(); }
    /// Moves the view's top left corner, in output pixels, as far as the picture reaches.
    void setViewport(int x, int y);
    void rotate();
    void rotateRev();
    /// Widget coordinates to processed-picture coordinates.
    [[nodiscard]] QPoint transformMousePoint(QPoint widgetPoint) const;
    /// The clip selection in widget coordinates.
    [[nodiscard]] QRectF clippingRect() const { return m_model.clippingRect(size()); }
    /// The clip selection in processed-picture coordinates, null when there is none.
    [[nodiscard]] QRect clipRectangle() const { return m_model.clipRectangle(); }

    // Drawing and text --------------------------------------------------------------------------
    /// Any mode but Text commits a text that is being edited.
    void setMouseMode(MouseMode mode);
    [[nodiscard]] MouseMode mouseMode() const { return m_mouseMode; }
    void clearPainting();
    /// Whether the pressure of a pen makes freehand lines thinner; off at first.
    void setPenPressure(bool on);
    /// The format acts on the selection of a text that is being edited, or on what is typed next.
    void setTextColor(const QColor &color) { m_text.setColor(color); }
    void setFontFace(const QString &face) { m_text.setFontFace(face); }
    /// Sizes below 1 are ignored; letters are 1000 points at most.
    void setFontSize(int points) { m_text.setFontSize(points); }
    [[nodiscard]] QColor textColor() const { return m_text.color(); }
    [[nodiscard]] QString fontFace() const { return m_text.fontFace(); }
    [[nodiscard]] int fontSize() const { return m_text.fontSize(); }
    void setTextFormat() { m_text.applyFormat(); }
    /// Whether undo() and redo() have something to do. While a text is being edited they act on the
    /// text, otherwise on the drawing.
    [[nodiscard]] bool canUndo() const;
    [[nodiscard]] bool canRedo() const;
    /// Paints the text that is being edited into the drawing, as Escape does; does nothing when
    /// there is none.
    void endTextEditing();

    /// Paints the text that is being edited, in this widget's coordinates and without its caret;
    /// nothing when there is none.
    void paintTypedText(QPainter *painter) const { m_text.paint(painter); }

    // Elsewhere ---------------------------------------------------------------------------------
    /// Hands `tap` the picture now and after every change; null for nobody. When this returns, the
    /// tap before is not called any more.
    void setPictureTap(PictureTap *tap) { m_tap.set(tap, m_model); }
    /// Where in this widget the picture stands.
    [[nodiscard]] QRect picturePlace() const
    {
        const ViewGeometry::Fit fitted = ViewGeometry::fit(pictureSize(), size());
        return {fitted.margin, fitted.size};
    }

    // Indications -------------------------------------------------------------------------------
    void setOsdProcessor(OSDProcessor *processor);

    // Written by the main window and the tool windows, as are the settings of the picture. GUI
    // thread; snapshot() takes a copy of the snapshot fields.
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
    /// Takes back the shape that is being dragged, or the last step: a shape, a stroke, a text, an
    /// erasing of everything, or the loss of the drawing to a picture of another size, which brings
    /// the drawing back scaled to the picture. GUI thread.
    void undo();
    /// Does again what was undone last. GUI thread.
    void redo();

signals:
    /// canUndo() or canRedo() has changed. GUI thread.
    void historyChanged();
    /// A clip has been copied to the clipboard.
    void clipDone();
    /// The text that is being edited has changed, or has become part of the drawing.
    void typedTextChanged();
    /// lastSnapshotFailure() has changed. GUI thread.
    void snapshotFailed(const QString &path, const QString &reason);

protected:
    // Mice, pens, fingers and wheels all go one way; see PointerInput.
    bool event(QEvent *event) override;
    void tabletEvent(QTabletEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private slots:
    void showSnapshotTaken();
    void keepSnapshotFailure(const QString &path, const QString &reason);
    void updatePosted();
    void announceHistory();
    /// Shows what has changed on a standing picture; a source in motion does so with its next
    /// frame.
    void showStroke();
    /// Shows a view that has moved, between two frames as well.
    void showView();
    void openTextEditor(QPoint widgetPoint);

private:
    void save(const CanvasModel::Shot &shot);
    void reportSnapshotFailure(const QString &path, const QString &reason);
    void requestRepaint();
    bool takePointer(QEvent *event);

    CanvasModel m_model{*this};
    /// Written by any thread.
    std::atomic<bool> m_updatePosted{false};
    PictureTapSlot m_tap;

    // GUI thread only.
    QPointer<OSDProcessor> m_osd;
    std::optional<SnapshotFailure> m_snapshotFailure;
    RefreshTimers m_timers{*this, m_model};
    PicturePainter m_picturePainter;
    QColor m_boardColor = Qt::white;
    MouseMode m_mouseMode = Hand;
    TextAnnotation m_text;
    std::unique_ptr<CanvasStrokes> m_strokes;
    ToolPointer *m_pointer;
    /// What historyChanged() has reported last.
    bool m_canUndo = false;
    bool m_canRedo = false;
};
