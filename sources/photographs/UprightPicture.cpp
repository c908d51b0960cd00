#include "sources/photographs/UprightPicture.h"

#include "sources/pictures/PictureMemory.h"

#include <QTransform>

namespace
{

bool sidesSwap(QImageIOHandler::Transformations turn)
{
    return turn & QImageIOHandler::TransformationRotate90;
}

} // namespace

QImage UprightPicture::of(const QImage &image, QImageIOHandler::Transformations turn)
{
    if (turn == QImageIOHandler::TransformationNone)
        return image;
    const QImage mirrored = image.mirrored(turn & QImageIOHandler::TransformationMirror,
                                           turn & QImageIOHandler::TransformationFlip);
    return PictureMemory::copyOf(sidesSwap(turn) ? mirrored.transformed(QTransform().rotate(90))
                                                 : mirrored);
}

QSize UprightPicture::of(QSize size, QImageIOHandler::Transformations turn)
{
    return sidesSwap(turn) ? size.transposed() : size;
}
