#include "tests/canvas/ReferencePipeline.h"

#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cstring>

namespace
{

int pixelBytes(const QImage &picture)
{
    return picture.depth() / 8;
}

uchar *pixelAt(QImage &picture, int x, int y)
{
    return picture.scanLine(y) + std::ptrdiff_t{x} * pixelBytes(picture);
}

void greyed(QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            uchar *b = pixelAt(picture, x, y);
            const int g = static_cast<int>(b[2] * 0.114 + (b[1] * 0.587 + b[0] * 0.2989));
            b[0] = b[1] = b[2] = static_cast<uchar>(g);
        }
    }
}

void mosaicked(QImage &picture)
{
    for (int top = 0; top < picture.height(); top += 8) {
        for (int left = 0; left < picture.width(); left += 8) {
            const int right = std::min(left + 8, picture.width());
            const int bottom = std::min(top + 8, picture.height());
            int sums[3] = {0, 0, 0};
            for (int y = top; y < bottom; ++y)
                for (int x = left; x < right; ++x)
                    for (int i = 0; i < 3; ++i)
                        sums[i] += pixelAt(picture, x, y)[i];
            const int count = (right - left) * (bottom - top);
            for (int y = top; y < bottom; ++y)
                for (int x = left; x < right; ++x)
                    for (int i = 0; i < 3; ++i)
                        pixelAt(picture, x, y)[i] = static_cast<uchar>(sums[i] / count);
        }
    }
}

void blacken(QImage &picture, int x, int y)
{
    std::memset(pixelAt(picture, x, y), 0, 3);
}

} // namespace

QImage ReferencePipeline::turned(const QImage &picture, int quarterTurns)
{
    return picture.transformed(QTransform().rotate(quarterTurns * 90.0, Qt::ZAxis),
                               Qt::FastTransformation);
}

QImage ReferencePipeline::drawnOver(QImage picture, const QImage &layer)
{
    if (layer.isNull())
        return picture;
    QPainter painter(&picture);
    painter.drawImage(0, 0, layer);
    painter.end();
    return picture;
}

QImage ReferencePipeline::withEffect(QImage picture, CanvasModes::EffectMode effect)
{
    if (effect == CanvasModes::EffectBW)
        greyed(picture);
    else if (effect == CanvasModes::EffectNegative)
        picture.invertPixels();
    else if (effect == CanvasModes::EffectMosaic)
        mosaicked(picture);
    return picture;
}

QImage ReferencePipeline::cropped(const QImage &picture, const ViewGeometry &view)
{
    const double s = view.scale();
    const int x0 = static_cast<int>(view.offset().x() / s);
    const int y0 = static_cast<int>(view.offset().y() / s);
    const int width = std::min(static_cast<int>(view.frameSize().width() / s), picture.width());
    const int height = std::min(picture.height(), static_cast<int>(view.frameSize().height() / s));
    return picture.copy(x0, y0, std::max(width, 1), std::max(height, 1));
}

QImage ReferencePipeline::masked(QImage picture, CanvasModes::MaskMode mask)
{
    const int w = picture.width();
    const int h = picture.height();
    const int cx = w / 2;
    const int cy = h / 2;
    if (mask == CanvasModes::MaskLeft || mask == CanvasModes::MaskTop) {
        QPainter painter(&picture);
        const QRect covered = mask == CanvasModes::MaskLeft
                                  ? QRect(QPoint(0, 0), QPoint(w / 2 - 1, h - 1))
                                  : QRect(QPoint(0, 0), QPoint(w - 1, h / 2 - 1));
        painter.fillRect(covered, Qt::black);
        return picture;
    }
    const int r = static_cast<int>(std::min(w, h) * 0.48);
    const int a = static_cast<int>(w * 0.3);
    const int b = static_cast<int>(h * 0.3);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const int dx = x - cx;
            const int dy = y - cy;
            const bool outside =
                mask == CanvasModes::MaskCircle
                    ? dx * dx + dy * dy > r * r
                    : mask == CanvasModes::MaskRectangle && (std::abs(dy) > b || std::abs(dx) > a);
            if (outside)
                blacken(picture, x, y);
        }
    }
    return picture;
}

QImage ReferencePipeline::fitted(const QImage &picture, QSize size)
{
    if (picture.size() == size)
        return picture;
    QImage scaled = picture.scaled(size, Qt::KeepAspectRatio, Qt::FastTransformation);
    if (scaled.width() >= size.width() && scaled.height() >= size.height())
        return scaled;
    QImage result(size, QImage::Format_RGB888);
    result.fill(0xFF000000);
    QPainter painter(&result);
    painter.drawImage((size.width() - scaled.width()) / 2, (size.height() - scaled.height()) / 2,
                      scaled);
    painter.end();
    return result;
}

QImage ReferencePipeline::run(const QImage &input, const Order &order)
{
    QImage picture = turned(input, order.view.rotation());
    picture = drawnOver(picture, order.layer);
    picture = withEffect(picture, order.effect);
    picture = cropped(picture, order.view);
    picture = masked(picture, order.mask);
    return fitted(picture, order.view.frameSize());
}

QImage ReferencePipeline::noise(QSize size, QImage::Format format, unsigned seed)
{
    std::mt19937 random(seed);
    QImage picture(size, format);
    for (int y = 0; y < size.height(); ++y) {
        uchar *line = picture.scanLine(y);
        for (int i = 0; i < picture.bytesPerLine(); ++i)
            line[i] = static_cast<uchar>(random());
        if (format == QImage::Format_ARGB32) {
            for (int x = 0; x < size.width(); ++x)
                line[4 * x + 3] = 255;
        }
    }
    return picture;
}

QImage ReferencePipeline::drawing(QSize size, unsigned seed)
{
    std::mt19937 random(seed);
    const auto within = [&](int bound) {
        return static_cast<int>(random() % static_cast<unsigned>(bound + 20)) - 10;
    };
    QImage layer(size, QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    QPainter painter(&layer);
    for (int i = 0; i < 6; ++i) {
        painter.setRenderHint(QPainter::Antialiasing, i % 2 == 0);
        painter.setPen(QPen(QColor(within(200) + 20, 40 * i, 200, i == 3 ? 128 : 255), 2 + i));
        painter.drawLine(within(size.width()), within(size.height()), within(size.width()),
                         within(size.height()));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(10, 200, 30, 99));
    painter.drawEllipse(within(size.width()), within(size.height()), 25, 17);
    return layer;
}

bool ReferencePipeline::same(const QImage &a, const QImage &b)
{
    if (a.size() != b.size() || a.format() != b.format())
        return false;
    const auto bytes =
        static_cast<std::size_t>(a.width()) * static_cast<std::size_t>(pixelBytes(a));
    for (int y = 0; y < a.height(); ++y) {
        if (std::memcmp(a.constScanLine(y), b.constScanLine(y), bytes) != 0)
            return false;
    }
    return true;
}
