#include "tools/skinrender/Drawing.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

bool Drawing::write(QSvgRenderer &drawing, QSize size, const QString &path)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    return QDir().mkpath(QFileInfo(path).path()) && image.save(path, "PNG");
}
