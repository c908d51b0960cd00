#pragma once

#include <QRect>
#include <QString>

#include <optional>
#include <vector>

/// Which screen the class sees. Rectangles are in the coordinates of the whole desktop. Any thread.
namespace ScreenChoice
{

struct Screen {
    QString name;
    QRect geometry;
};

/// The screen that holds most of `window`; the first one when none holds any of it, nothing
/// without screens.
[[nodiscard]] std::optional<std::size_t> holding(const std::vector<Screen> &screens,
                                                 const QRect &window);

/// The screen of that name, if `window` is not on it; else the first that it is not on. Nothing
/// when there is no such screen.
[[nodiscard]] std::optional<std::size_t> besides(const std::vector<Screen> &screens,
                                                 const QRect &window, const QString &wanted);

} // namespace ScreenChoice
