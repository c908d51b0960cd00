#pragma once

#include <QHash>
#include <QStackedWidget>

class ImageCanvas;
class OSDProcessor;

/// The canvases, one for each mode, with their indications; the one on top is current. GUI thread.
class CanvasDeck : public QStackedWidget
{
    Q_OBJECT

public:
    using QStackedWidget::QStackedWidget;

    /// Adds the canvas of the next mode. The deck becomes its parent; the indications are not
    /// owned.
    void add(ImageCanvas *canvas, OSDProcessor *indications);

    /// The mode of the current canvas, a number of Modes; -1 while there is none.
    [[nodiscard]] int mode() const { return currentIndex(); }
    void setMode(int mode) { setCurrentIndex(mode); }

    /// Null while there is none.
    [[nodiscard]] ImageCanvas *current() const;
    [[nodiscard]] ImageCanvas *canvas(int mode) const;
    /// Whether the camera's canvas is current.
    [[nodiscard]] bool onLive() const;
    /// The indications of the current canvas; null while there is none.
    [[nodiscard]] OSDProcessor *indications() const;
    [[nodiscard]] const QHash<ImageCanvas *, OSDProcessor *> &allIndications() const;

private:
    QHash<ImageCanvas *, OSDProcessor *> m_indications;
};
