#include "tools/virtualcamera/SheetPicture.h"

#include "tools/virtualcamera/SheetScene.h"
#include "tools/virtualcamera/SheetStill.h"

#include <QPainter>
#include <QTransform>

#include <array>
#include <cstring>

namespace
{

/// The noise of the sensor, which makes frames as large as those of a real camera.
constexpr int GRAIN = 16;
/// Out of focus by so much: the picture is drawn that many times smaller and enlarged again.
constexpr double STRONGEST_BLUR = 5.0;

void addGrain(QImage &picture)
{
    quint32 seed = 12345;
    for (int y = 0; y < picture.height(); ++y) {
        auto *bytes = picture.scanLine(y);
        for (int x = 0; x < picture.width(); ++x, bytes += 4) {
            seed = seed * 1664525u + 1013904223u;
            const int grain = static_cast<int>((seed >> 16) * GRAIN >> 16) - GRAIN / 2;
            for (int channel = 0; channel < 3; ++channel)
                bytes[channel] = static_cast<uchar>(qBound(0, bytes[channel] + grain, 255));
        }
    }
}

QRect pixelsOf(const QTransform &toPixels, const QRectF &area, const QRect &bounds)
{
    return toPixels.mapRect(area).toAlignedRect().adjusted(-1, -1, 1, 1).intersected(bounds);
}

} // namespace

SheetPicture::SheetPicture(QSize size, const QString &banner)
    : m_banner(banner)
    , m_whole(size, QImage::Format_RGB32)
{
    m_whole.fill(Qt::black);
    QPainter painter(&m_whole);
    painter.setTransform(SheetScene::toPixels(size, 1.0));
    SheetScene::paintStill(painter, m_banner);
    painter.end();
    addGrain(m_whole);
    m_background = m_whole;
    m_sharp = m_whole.copy();
}

std::vector<QRect> SheetPicture::draw(quint32 frameNumber, const CameraView &view)
{
    const QRect all = m_sharp.rect();
    const bool stood = m_drawn && view == m_view && !m_coarse;
    if (!stood)
        showView(view);
    const std::vector<QRect> moving = movingAreas(frameNumber);
    std::vector<QRect> changed{all};
    if (stood) {
        changed = m_lastMoving;
        changed.insert(changed.end(), moving.begin(), moving.end());
        if (changed.size() == 2 * moving.size() && moving.size() == 2)
            changed = {changed[0].united(changed[2]), changed[1].united(changed[3])};
    }
    for (const QRect &area : changed)
        restore(area);
    for (const QRect &area : changed)
        paintMoving(frameNumber, area);
    for (const QRect &area : changed)
        brighten(area);
    m_lastMoving = moving;
    m_drawn = true;
    if (m_view.blur > 0) {
        soften();
        return {all};
    }
    return changed;
}

/// While the lens moves the picture is stretched; once it stands it is drawn again.
void SheetPicture::showView(const CameraView &view)
{
    const bool zoomMoves = m_drawn && view.zoom != m_view.zoom;
    if (zoomMoves && view.zoom != 1.0) {
        const QTransform scene = SheetScene::toPixels(m_whole.size(), 1.0).inverted() *
                                 SheetScene::toPixels(m_whole.size(), view.zoom);
        QPainter painter(&m_background);
        painter.setTransform(scene);
        painter.drawImage(0, 0, m_whole);
        m_coarse = true;
    } else if (view.zoom == 1.0) {
        m_background = m_whole;
        m_coarse = false;
    } else if (m_coarse || view.zoom != m_view.zoom) {
        QPainter painter(&m_background);
        painter.setTransform(SheetScene::toPixels(m_whole.size(), view.zoom));
        SheetScene::paintStill(painter, m_banner);
        painter.end();
        addGrain(m_background);
        m_coarse = false;
    }
    m_view = view;
}

std::vector<QRect> SheetPicture::movingAreas(quint32 frameNumber) const
{
    const QTransform toPixels = SheetScene::toPixels(m_sharp.size(), m_view.zoom);
    return {pixelsOf(toPixels, SheetScene::counterArea(), m_sharp.rect()),
            pixelsOf(toPixels, SheetScene::pencilArea(frameNumber), m_sharp.rect())};
}

void SheetPicture::restore(const QRect &area)
{
    const std::ptrdiff_t left = std::ptrdiff_t{4} * area.left();
    const auto bytes = std::size_t{4} * static_cast<std::size_t>(area.width());
    for (int y = area.top(); y <= area.bottom(); ++y)
        std::memcpy(m_sharp.scanLine(y) + left, m_background.constScanLine(y) + left, bytes);
}

void SheetPicture::paintMoving(quint32 frameNumber, const QRect &area)
{
    QPainter painter(&m_sharp);
    painter.setClipRect(area);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(SheetScene::toPixels(m_sharp.size(), m_view.zoom));
    SheetScene::paintCounter(painter, frameNumber);
    SheetScene::paintPencil(painter, frameNumber);
}

void SheetPicture::brighten(const QRect &area)
{
    if (m_view.brightness == 1.0)
        return;
    std::array<uchar, 256> tone{};
    for (int value = 0; value < 256; ++value)
        tone[static_cast<std::size_t>(value)] =
            static_cast<uchar>(qMin(255, static_cast<int>(value * m_view.brightness)));
    for (int y = area.top(); y <= area.bottom(); ++y) {
        uchar *bytes = m_sharp.scanLine(y) + std::ptrdiff_t{4} * area.left();
        for (int i = 0; i < 4 * area.width(); ++i)
            bytes[i] = tone[bytes[i]];
    }
}

void SheetPicture::soften()
{
    const QSize full = m_sharp.size();
    const QSize small = full / (1.0 + m_view.blur * (STRONGEST_BLUR - 1.0));
    m_soft = m_sharp.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                 .scaled(full, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                 .convertToFormat(QImage::Format_RGB32);
}
