#include "mainwindow/presentation/ScreenChoice.h"

#include <cstdint>

namespace
{

std::int64_t commonArea(const QRect &a, const QRect &b)
{
    const QRect common = a & b;
    return common.isEmpty() ? 0 : std::int64_t{common.width()} * common.height();
}

} // namespace

std::optional<std::size_t> ScreenChoice::holding(const std::vector<Screen> &screens,
                                                 const QRect &window)
{
    std::optional<std::size_t> best;
    std::int64_t most = -1;
    for (std::size_t i = 0; i < screens.size(); ++i) {
        const std::int64_t area = commonArea(screens[i].geometry, window);
        if (area > most) {
            most = area;
            best = i;
        }
    }
    return best;
}

std::optional<std::size_t> ScreenChoice::besides(const std::vector<Screen> &screens,
                                                 const QRect &window, const QString &wanted)
{
    const std::optional<std::size_t> taken = holding(screens, window);
    std::optional<std::size_t> first;
    for (std::size_t i = 0; i < screens.size(); ++i) {
        // Screens that show the same part of the desktop show the window, too.
        if (i == taken || screens[i].geometry == screens[*taken].geometry)
            continue;
        if (!wanted.isEmpty() && screens[i].name == wanted)
            return i;
        if (!first)
            first = i;
    }
    return first;
}
