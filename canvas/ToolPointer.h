#pragma once

#include "canvas/ToolCursor.h"

#include <QObject>

#include <optional>

class ImageCanvas;

/// Keeps the pointer over a canvas in line with its tool, colour, width and zoom, whoever changes
/// them: it looks whenever the canvas is entered, pressed or painted. A child of the canvas. GUI
/// thread.
class ToolPointer : public QObject
{
    Q_OBJECT

public:
    explicit ToolPointer(ImageCanvas *canvas);

    /// Filters nothing.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setDragging(bool dragging);
    void show();

    ImageCanvas *m_canvas;
    bool m_dragging = false;
    /// Empty until the pointer was set for the first time.
    std::optional<ToolCursor> m_shown;
};
