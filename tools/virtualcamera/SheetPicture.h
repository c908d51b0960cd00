#pragma once

#include "tools/virtualcamera/CameraModel.h"

#include <QImage>
#include <QRect>
#include <QString>

#include <vector>

/// What the emulated camera sees: a sheet of paper on a wooden desk with text of several sizes, a
/// ruler, colour patches, a frame counter and a pencil that moves. Not thread-safe; any thread.
class SheetPicture
{
public:
    SheetPicture(QSize size, const QString &banner);

    /// Draws that frame and returns the areas that differ from the frame before.
    std::vector<QRect> draw(quint32 frameNumber, const CameraView &view);

    /// The frame drawn last, Format_RGB32.
    [[nodiscard]] const QImage &image() const { return m_view.blur > 0 ? m_soft : m_sharp; }

private:
    void showView(const CameraView &view);
    [[nodiscard]] std::vector<QRect> movingAreas(quint32 frameNumber) const;
    void paintMoving(quint32 frameNumber, const QRect &area);
    void restore(const QRect &area);
    void brighten(const QRect &area);
    void soften();

    QString m_banner;
    QImage m_whole;      ///< all of the desk, without what moves
    QImage m_background; ///< the part in view, without what moves
    QImage m_sharp;      ///< the frame in focus
    QImage m_soft;       ///< the frame out of focus, where it is
    CameraView m_view;
    std::vector<QRect> m_lastMoving;
    bool m_coarse = false; ///< m_background was stretched while the lens was moving
    bool m_drawn = false;
};
