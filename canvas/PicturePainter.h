#pragma once

#include "canvas/model/CanvasModel.h"
#include "canvas/picture/ScaledPicture.h"

#include <QRect>
#include <QSize>

class QPainter;

/// Paints the picture of a canvas into its middle, its aspect kept. A new one is scaled straight
/// into what is painted on, where that can be; one that is painted again is kept in the screen's
/// own pixels. GUI thread.
class PicturePainter
{
public:
    /// `size` is the widget's, in units of the layout.
    void paint(QPainter *painter, QSize size, const CanvasModel::Shown &shown);

    /// Where a picture of that size stands in such a widget, in pixels of a screen with so many to
    /// a unit of the layout.
    [[nodiscard]] static QRect pixelPlace(QSize picture, QSize size, double ratio);

    /// Whether the area around the picture, except for an edge of 2, is painted black.
    void setBarsBlack(bool black) { m_barsBlack = black; }

    /// Frees the scaled picture.
    void release() { m_scaled.release(); }

private:
    /// `place` is in the pixels of the screen, in which the painter counts.
    void paintInto(QPainter &painter, const QRect &place, const CanvasModel::Shown &shown);

    ScaledPicture m_scaled;
    /// Those of the last picture that was painted.
    std::uint64_t m_serial = 0;
    QSize m_pixels;
    bool m_barsBlack = true;
};
