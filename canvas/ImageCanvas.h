#pragma once

#include "CanvasModes.h"
#include "sources/ICaptureCB.h"

#include <QColor>
#include <QImage>
#include <QMutex>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QWidget>

#include <atomic>
#include <limits>

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
    void imageCaptured(void *data, int width, int height, bool mirror, bool rgb32) override;
    void startAutoRefresh() override;
    void stopAutoRefresh() override;

    /// Makes the board a 1280 x 720 picture of that colour and remembers the colour.
    void fillCanvas(const QColor &color);
    [[nodiscard]] QColor boardColor() const;
    void setDrawingBoardMode(bool on);
    /// A copy of the picture as shown, saved and printed; null before the first one.
    [[nodiscard]] QImage currentImage() const;
    [[nodiscard]] QSize pictureSize() const;

    // Snapshots ---------------------------------------------------------------------------------
    /// Arms a shot or a series with the public snapshot fields, if the folder exists.
    void snapshot();
    void stopSnapshot();
    /// Whether a continuous series is armed.
    [[nodiscard]] bool seriesArmed() const;

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
    void setMouseMode(MouseMode mode);
    [[nodiscard]] MouseMode mouseMode() const;
    void clearPainting();
    void setTextColor(const QColor &color);
    void setFontFace(const QString &face);
    void setFontSize(int points);
    [[nodiscard]] QColor textColor() const;
    [[nodiscard]] QString fontFace() const;
    [[nodiscard]] int fontSize() const;
    void setTextFormat();
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
    void autoRefresh();

signals:
    /// A clip has been copied to the clipboard.
    void clipDone();
};
