#pragma once

#include "canvas/ToolCursor.h"

#include <QObject>

#include <optional>

class CanvasStrokes;
class ImageCanvas;

/// Keeps the pointer over a canvas in line with its tool, colour, width and zoom, whoever changes
/// them: it looks whenever the canvas is entered, used or painted. A child of the canvas. GUI
/// thread.
class ToolPointer : public QObject
{
    Q_OBJECT

public:
    /// `strokes` must live longer.
    ToolPointer(ImageCanvas *canvas, const CanvasStrokes *strokes);

    /// To be called when a stroke has begun or ended, or another end of a pen came near.
    void show();

    /// Filters nothing.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ImageCanvas *m_canvas;
    const CanvasStrokes *m_strokes;
    /// Empty until the pointer was set for the first time.
    std::optional<ToolCursor> m_shown;
};
