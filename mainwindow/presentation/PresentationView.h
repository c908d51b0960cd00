#pragma once

#include "canvas/PicturePainter.h"
#include "canvas/PictureTap.h"
#include "canvas/picture/ScreenScaler.h"

#include <QPicture>
#include <QPointF>
#include <QPointer>
#include <QWidget>

#include <atomic>
#include <mutex>
#include <optional>

class ImageCanvas;

/// The window for the class: the picture of a canvas, scaled as the canvas scales its own, and
/// nothing else but the text that is being typed on it and a ring where the pointer is.
///
/// Pictures come from any thread; everything else belongs to the GUI thread.
class PresentationView : public QWidget, public PictureTap
{
    Q_OBJECT

public:
    /// `window` gets the keys that are pressed here.
    explicit PresentationView(QWidget *window);
    ~PresentationView() override;

    /// Shows that canvas from now on; null leaves black.
    void setCanvas(ImageCanvas *canvas);
    /// Keeps what is shown now, whatever happens to the canvas.
    void setHeld(bool held);
    [[nodiscard]] bool isHeld() const { return m_held; }
    void setBlank(bool blank);
    [[nodiscard]] bool isBlank() const { return m_blank; }
    void setPointerShown(bool shown);

    void pictureShown(const CanvasModel::Shown &shown) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The user wants it closed.
    void leaveWanted();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void takeLatest();
    /// Asks for a repaint of what a new picture changes.
    void updatePicture();
    void paintPicture(QPainter *painter, const QRegion &region);
    void forward(const QKeyEvent *event);
    void setPointer(const std::optional<QPointF> &canvasPoint);
    /// Where in this widget the picture stands.
    [[nodiscard]] QRect picturePlace() const;
    /// From the coordinates of the canvas to those of this widget.
    [[nodiscard]] QTransform fromCanvas() const;
    /// The rectangle that the ring covers around that point of the canvas.
    [[nodiscard]] QRect ringPlace(QPointF canvasPoint) const;
    void paintRing(QPainter *painter) const;

    QPointer<QWidget> m_window;
    QPointer<ImageCanvas> m_canvas;
    /// Whether the canvas is told of the pointer for reasons of its own.
    bool m_canvasHovers = false;
    ScreenScaler m_scaler;
    /// For where the window's own pixels cannot be reached.
    PicturePainter m_picturePainter;
    CanvasModel::Shown m_shown;
    /// Where the picture stood when the whole window was to be painted last.
    QRect m_place;
    bool m_updateWaits = false;
    /// Where the held picture stood on its canvas, and the text that was being typed on it.
    QRect m_heldPlace;
    QPicture m_heldText;
    bool m_held = false;
    bool m_blank = false;
    bool m_pointerShown = true;
    std::optional<QPointF> m_pointer;

    /// Guards m_latest.
    std::mutex m_mutex;
    CanvasModel::Shown m_latest;
    /// Written by any thread.
    std::atomic<bool> m_updatePosted{false};
};
