#pragma once

#include <QColorSpace>
#include <QColorTransform>
#include <QImage>

/// Brings rows of pictures into the colours that the program works in: sRGB, opaque, 24 bits a
/// pixel. A value; any thread.
class PictureColours
{
public:
    /// From that colour space; one that is not valid counts as sRGB.
    explicit PictureColours(const QColorSpace &space);

    /// The rows as RGB888, what is transparent over white. Needs three or four bytes a pixel
    /// besides the answer; null when memory cannot be had.
    [[nodiscard]] QImage rgb(const QImage &rows) const;

    /// The whole picture, needing no memory besides the answer; of a size that is no larger in
    /// either direction, for which pixels are averaged.
    [[nodiscard]] static QImage prepared(const QImage &image, const QColorSpace &space, QSize size);
    [[nodiscard]] static QImage prepared(const QImage &image, const QColorSpace &space);

private:
    bool m_inScreenColours;
    QColorTransform m_transform;
};
