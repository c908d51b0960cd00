#pragma once

#include <QImage>
#include <QImageIOHandler>
#include <QSize>

/// What an orientation tag does. Any thread.
namespace UprightPicture
{

/// The picture as its orientation tag wants it, in RGB888 as it comes: mirrored first, then turned.
[[nodiscard]] QImage of(const QImage &image, QImageIOHandler::Transformations turn);

[[nodiscard]] QSize of(QSize size, QImageIOHandler::Transformations turn);

} // namespace UprightPicture
