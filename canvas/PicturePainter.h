#pragma once

#include "canvas/model/CanvasModel.h"
#include "canvas/picture/ScaledPicture.h"

#include <QSize>

class QPainter;

/// Paints the picture of a canvas into its middle, its aspect kept. Keeps the picture in the
/// screen's own pixels from one painting to the next. GUI thread.
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
    ScaledPicture m_scaled;
    bool m_barsBlack = true;
};
