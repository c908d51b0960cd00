#pragma once

#include "tools/skinrender/SkinTable.h"

#include <QImage>
#include <QList>

class QPainter;

/// Draws every image of the table in every state, on the background that it has in the window, with
/// its name. GUI thread, because it writes text.
class ContactSheet
{
public:
    /// `ratio` is the device pixel ratio of the sheet, 1 or 2.
    explicit ContactSheet(const QList<SkinImage> &images, double ratio);

    [[nodiscard]] QImage draw();

private:
    /// Images of one section, ground and size, which share their columns.
    using Group = QList<SkinImage>;

    [[nodiscard]] QList<Group> groups() const;
    /// Draws with a painter, or only measures without one; returns the sheet's height.
    int drawGroups(QPainter *painter) const;
    int drawGroup(QPainter *painter, const Group &group, int y) const;
    void drawCell(QPainter &painter, const SkinImage &image, const QRect &cell) const;

    QList<SkinImage> m_images;
    double m_ratio;
};
