#include "resources/SkinImages.h"

#include "resources/Skin.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QtMath>

namespace
{

// Premultiplied and opaque images paint several times faster than those with plain alpha.
QImage readyToPaint(const QImage &image)
{
    if (image.isNull())
        return image;
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                         : QImage::Format_RGB32);
}

} // namespace

QImage SkinImages::load(const QString &path)
{
    static const bool initialised = (initialiseSkin(), true);
    Q_UNUSED(initialised)
    if (qGuiApp != nullptr && qGuiApp->devicePixelRatio() > 1.0) {
        const QString stem = path.endsWith(".png") ? path.chopped(4) : path;
        const QString twice = stem + "@2x.png";
        if (QFile::exists(twice)) {
            QImage image = readyToPaint(QImage(twice));
            image.setDevicePixelRatio(2.0);
            return image;
        }
    }
    return readyToPaint(QImage(path));
}

QSize SkinImages::layoutSize(const QImage &image)
{
    // The pixel ratio of a null image is 0.
    if (image.isNull())
        return {0, 0};
    return (QSizeF(image.size()) / image.devicePixelRatioF()).toSize();
}

void SkinImages::smoothAtFractions(QPainter *painter)
{
    const double ratio = painter->device()->devicePixelRatioF();
    if (!qFuzzyCompare(ratio, 1.0) && !qFuzzyCompare(ratio, 2.0))
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
}

QImage SkinImages::stretched(const QImage &image, QSize size)
{
    if (image.isNull() || size.isEmpty())
        return {};
    const double ratio = image.devicePixelRatioF();
    QImage result = image.scaled((QSizeF(size) * ratio).toSize(), Qt::IgnoreAspectRatio,
                                 Qt::FastTransformation);
    result.setDevicePixelRatio(ratio);
    return result;
}
