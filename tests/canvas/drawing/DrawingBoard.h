#pragma once

#include "canvas/drawing/Drawing.h"
#include "canvas/picture/ViewGeometry.h"
#include "tests/canvas/drawing/WholeCopies.h"

#include <QTextDocument>

#include <cstring>

/// A drawing and a view, as the canvas holds them.
struct DrawingBoard {
    static constexpr QSize FRAME{200, 140};

    explicit DrawingBoard(QSize size = FRAME) { resize(size); }

    void resize(QSize size)
    {
        view.setFrameSize(size);
        drawing.resize(view.rotatedSize());
    }
    void turn(bool clockwise)
    {
        view.turn(clockwise);
        drawing.turn(clockwise);
    }
    void drag(CanvasModes::MouseMode mode, const QVector<QPoint> &points)
    {
        drawing.press(mode, points.first());
        for (const QPoint point : points.mid(1))
            drawing.move(mode, point, style, view);
        drawing.release();
    }
    void line(int y) { drag(CanvasModes::Line, {{10, y}, {150, y}}); }
    void write(const QString &text, QPoint at)
    {
        QTextDocument document(text);
        document.setTextWidth(100);
        drawing.placeText(at, view);
        commit(document);
    }
    void commit(QTextDocument &document)
    {
        drawing.commitText(document, view.isEmpty() ? FRAME : view.transformedSize(), FRAME);
    }
    /// What is laid over the picture.
    [[nodiscard]] QImage shown()
    {
        const AnnotationLayer &layer = drawing.layer();
        QImage picture = WholeCopies::blank(layer.size());
        if (!layer.isUsed() || layer.image().isNull())
            return picture;
        layer.forEachTouched(layer.rect(), [&](const QRect &part) {
            for (int y = part.top(); y <= part.bottom(); ++y)
                std::memcpy(picture.scanLine(y) + std::ptrdiff_t{4} * part.left(),
                            layer.image().constScanLine(y) + std::ptrdiff_t{4} * part.left(),
                            std::size_t{4} * static_cast<std::size_t>(part.width()));
        });
        return picture;
    }

    Drawing drawing;
    ViewGeometry view;
    DragTool::ShapeStyle style{Qt::red, 3, false, Qt::blue};
};
