#pragma once

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/picture/ViewGeometry.h"
#include "tests/canvas/MouseModes.h"

#include <QtTest>

#include <QPainter>

/// The tools over a layer and a view, as the canvas holds them.
struct ToolBoard {
    using Mode = CanvasModes::MouseMode;
    static constexpr QSize FRAME{320, 180};

    explicit ToolBoard(QSize frame = FRAME)
    {
        view.setFrameSize(frame);
        layer.reset(view.rotatedSize());
    }

    void press(Mode mode, QPoint point) { tools.press(mode, point, layer); }
    void move(Mode mode, QPoint point)
    {
        tools.move(mode, point, ink, layer, view);
        tools.drawPending(layer);
    }
    /// Several moves between two refreshes.
    void moveAll(Mode mode, const QVector<QPoint> &points)
    {
        for (const QPoint point : points)
            tools.move(mode, point, ink, layer, view);
    }
    void drag(Mode mode, QPoint from, QPoint to)
    {
        press(mode, from);
        move(mode, to);
        tools.release(layer);
    }
    void fill(const QColor &color)
    {
        layer.paint({layer.rect()},
                    [&](QPainter &painter) { painter.fillRect(layer.rect(), color); });
    }
    void turn(bool clockwise)
    {
        view.turn(clockwise);
        layer.turn(clockwise);
    }
    [[nodiscard]] QImage picture() const
    {
        if (!layer.image().isNull())
            return layer.image().copy();
        return emptyPicture(layer.size());
    }
    static QImage emptyPicture(QSize size)
    {
        QImage picture(size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        return picture;
    }
    [[nodiscard]] QRegion touched() const
    {
        QRegion region;
        layer.forEachTouched(layer.rect(), [&region](const QRect &part) { region += part; });
        return region;
    }

    DragTool tools;
    DragTool::ShapeStyle ink;
    AnnotationLayer layer;
    ViewGeometry view;
};
