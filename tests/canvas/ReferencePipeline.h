#pragma once

#include "canvas/picture/ViewGeometry.h"
#include "settings/CanvasModes.h"

#include <QImage>

#include <random>

/// The picture pipeline written a second time, slow and plain, with the toolkit's own pictures and
/// painters: the reference that the fast one is compared with.
namespace ReferencePipeline
{

struct Order {
    ViewGeometry view;
    CanvasModes::EffectMode effect = CanvasModes::EffectColor;
    CanvasModes::MaskMode mask = CanvasModes::MaskNone;
    /// Null for an unused layer.
    QImage layer;
};

[[nodiscard]] QImage turned(const QImage &picture, int quarterTurns);
[[nodiscard]] QImage drawnOver(QImage picture, const QImage &layer);
[[nodiscard]] QImage withEffect(QImage picture, CanvasModes::EffectMode effect);
[[nodiscard]] QImage cropped(const QImage &picture, const ViewGeometry &view);
[[nodiscard]] QImage masked(QImage picture, CanvasModes::MaskMode mask);
[[nodiscard]] QImage fitted(const QImage &picture, QSize size);

[[nodiscard]] QImage run(const QImage &input, const Order &order);

/// A picture of random pixels, opaque when it has an alpha channel.
[[nodiscard]] QImage noise(QSize size, QImage::Format format, unsigned seed);
/// A layer with a few strokes, filled and half transparent shapes among them.
[[nodiscard]] QImage drawing(QSize size, unsigned seed);
/// Whether both have one size and format and the same pixels, whatever lies between the rows.
[[nodiscard]] bool same(const QImage &a, const QImage &b);

} // namespace ReferencePipeline
