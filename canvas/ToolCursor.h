#pragma once

#include "settings/CanvasModes.h"

#include <QColor>
#include <QCursor>

/// What the pointer over a canvas looks like: the tool itself. Lengths are in pixels of the widget.
struct ToolCursor {
    CanvasModes::MouseMode tool = CanvasModes::Hand;
    QColor penColor = Qt::black;
    double penWidth = 1.0;
    /// Edge of the square that the eraser clears.
    double eraserSide = 1.0;
    /// The left button is held.
    bool dragging = false;
    /// Pixels of the screen in one of the widget.
    double pixelRatio = 1.0;
    /// Whether the platform counts a hot spot in pixels of the screen, as the one of X11 does.
    bool hotSpotOnScreen = false;

    [[nodiscard]] bool operator==(const ToolCursor &other) const;
    [[nodiscard]] bool operator!=(const ToolCursor &other) const { return !(*this == other); }

    /// Its hot spot is the point that the tool works on. GUI thread.
    [[nodiscard]] QCursor cursor() const;
};
