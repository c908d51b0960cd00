#pragma once

#include "canvas/ImageCanvas.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/ShownPicture.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <memory>

/// A canvas that shows white paper, and what is drawn on it in red.
namespace DrawnCanvas
{

constexpr QSize FRAME(160, 120);

/// White paper with a mark in its first corner, so that turns show.
inline QImage paper(QSize size = FRAME)
{
    QImage picture(size, QImage::Format_RGB888);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.fillRect(0, 0, 16, 6, QColor(0, 160, 0));
    painter.fillRect(0, 0, 6, 16, QColor(0, 160, 0));
    return picture;
}

inline std::unique_ptr<ImageCanvas> canvasOf(QSize widget = FRAME, QSize picture = FRAME)
{
    auto canvas = std::make_unique<ImageCanvas>();
    canvas->resize(widget);
    canvas->imageCaptured(paper(picture));
    canvas->penColor = Qt::red;
    canvas->fillColor = QColor(0, 128, 255);
    return canvas;
}

inline int redPixels(const QImage &picture)
{
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    int count = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        count += static_cast<int>(std::count(row, row + pixels.width(), 0xFFFF0000U));
    }
    return count;
}

inline bool isRed(const QImage &picture, int x, int y)
{
    return picture.pixelColor(x, y) == QColor(Qt::red);
}

struct Tool {
    const char *name;
    CanvasModes::MouseMode mode;
    bool closed;
};

inline constexpr Tool TOOLS[] = {
    {"freehand", CanvasModes::Freehand, false}, {"line", CanvasModes::Line, false},
    {"arrow", CanvasModes::Arrow, true},        {"rectangle", CanvasModes::Rectangle, true},
    {"circle", CanvasModes::Circle, true},      {"triangle", CanvasModes::Triangle, true},
    {"eraser", CanvasModes::Eraser, false},
};

inline void use(ImageCanvas &canvas, const Tool &tool)
{
    if (tool.mode == CanvasModes::Eraser) {
        // Something to rub out.
        const int width = canvas.penWidth;
        canvas.penWidth = 3;
        canvas.setMouseMode(CanvasModes::Line);
        for (int y = 10; y < FRAME.height(); y += 9)
            CanvasMouse::drag(canvas, {{5, y}, {155, y}});
        canvas.penWidth = width;
    }
    canvas.setMouseMode(tool.mode);
    if (tool.mode == CanvasModes::Freehand || tool.mode == CanvasModes::Eraser)
        CanvasMouse::drag(canvas, {{45, 30}, {115, 40}, {60, 70}, {110, 95}});
    else
        CanvasMouse::drag(canvas, {{45, 30}, {150, 20}, {115, 90}});
}

} // namespace DrawnCanvas
