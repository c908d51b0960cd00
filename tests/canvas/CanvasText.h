#pragma once

#include "canvas/ImageCanvas.h"
#include "tests/canvas/ShownPicture.h"

#include <QtTest>

#include <QTextCursor>
#include <QTextEdit>

#include <memory>

/// What the tests of the text tool share.
namespace CanvasText
{

inline constexpr QSize PAGE(400, 300);

inline QImage page(QSize size = PAGE)
{
    QImage picture(size, QImage::Format_RGB888);
    picture.fill(Qt::white);
    return picture;
}

inline std::unique_ptr<ImageCanvas> textCanvas(QSize widget = PAGE, QSize picture = PAGE)
{
    auto canvas = std::make_unique<ImageCanvas>();
    canvas->resize(widget);
    canvas->imageCaptured(page(picture));
    canvas->setMouseMode(CanvasModes::Text);
    canvas->show();
    return canvas;
}

inline QTextEdit &editorOf(ImageCanvas &canvas)
{
    return *canvas.findChild<QTextEdit *>();
}

inline void type(ImageCanvas &canvas, const QString &text)
{
    QTest::keyClicks(&editorOf(canvas), text);
}

/// The smallest rectangle that holds every pixel that is not white.
inline QRect inkOf(const QImage &picture)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != 0xFFFFFFFFU)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

/// The format of each letter of the first line.
inline QTextCharFormat formatAt(QTextEdit &editor, int position)
{
    QTextCursor cursor(editor.document());
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

} // namespace CanvasText
