#pragma once

#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QVector>

/// Where the letters of a text are that is being typed onto the picture.
namespace TypedText
{

/// The letters alone, as large as the editor.
inline QImage letters(const QTextEdit &editor)
{
    QImage image(editor.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(-editor.horizontalScrollBar()->value(), -editor.verticalScrollBar()->value());
    editor.document()->drawContents(&painter);
    return image;
}

/// The pixels beside a letter that no letter covers.
inline QVector<QPoint> pixelsAround(const QImage &letters)
{
    QVector<QPoint> around;
    const auto isInk = [&](int x, int y) {
        return letters.valid(x, y) && qAlpha(letters.pixel(x, y)) > 0;
    };
    for (int y = 1; y < letters.height(); ++y) {
        for (int x = 1; x < letters.width(); ++x) {
            const bool beside =
                isInk(x - 1, y) || isInk(x + 1, y) || isInk(x, y - 1) || isInk(x, y + 1);
            if (!isInk(x, y) && beside)
                around.append({x, y});
        }
    }
    return around;
}

} // namespace TypedText
