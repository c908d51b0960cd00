#include "mainwindow/actions/PageFit.h"

#include <algorithm>

std::optional<PageFit> PageFit::of(QSize picture, QSize page)
{
    if (picture.isEmpty() || page.isEmpty())
        return std::nullopt;
    const bool turned = page.width() < page.height();
    if (turned)
        picture.transpose();
    const double scale = std::min(page.width() / static_cast<double>(picture.width()),
                                  page.height() / static_cast<double>(picture.height()));
    const QSize drawn(static_cast<int>(picture.width() * scale),
                      static_cast<int>(picture.height() * scale));
    const QPoint topLeft((page.width() - drawn.width()) / 2, (page.height() - drawn.height()) / 2);
    return PageFit{turned, QRect(topLeft, drawn)};
}
