#pragma once

#include <QRect>
#include <QSize>

#include <optional>

/// How a picture lies on a printed page.
struct PageFit {
    /// Whether the picture is turned by 90 degrees clockwise before it is drawn. Every upright page
    /// turns it, whatever the picture's own shape, because the camera's pictures are wide.
    bool turned = false;
    /// Where the (turned) picture is drawn, in device pixels of the page.
    QRect target;

    /// Empty when the picture or the page has no area.
    [[nodiscard]] static std::optional<PageFit> of(QSize picture, QSize page);
};
