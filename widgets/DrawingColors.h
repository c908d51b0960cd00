#pragma once

#include <QColor>
#include <QCoreApplication>

#include <array>

/// The colours that the pop-up windows offer, with the ending of their skin names and their names
/// as source texts in the context of the colour window.
namespace DrawingColors
{

struct Entry {
    const char *skin;
    QRgb color;
    const char *name;
};

/// Pens and text; also the shape fill.
constexpr std::array<Entry, 4> PEN{{
    {"BLACK", 0xFF000000, QT_TRANSLATE_NOOP("ColorToolWindow", "Black")},
    {"RED", 0xFFFF0000, QT_TRANSLATE_NOOP("ColorToolWindow", "Red")},
    {"YELLOW", 0xFFFFFF00, QT_TRANSLATE_NOOP("ColorToolWindow", "Yellow")},
    {"SKY", 0xFF0000FF, QT_TRANSLATE_NOOP("ColorToolWindow", "Blue")},
}};

/// The drawing board.
constexpr std::array<Entry, 4> BOARD{{
    {"WHITE", 0xFFFFFFFF, QT_TRANSLATE_NOOP("ColorToolWindow", "White")},
    {"BLACK", 0xFF000000, QT_TRANSLATE_NOOP("ColorToolWindow", "Black")},
    {"YELLOW", 0xFFFFFF00, QT_TRANSLATE_NOOP("ColorToolWindow", "Yellow")},
    {"SKY", 0xFF0000FF, QT_TRANSLATE_NOOP("ColorToolWindow", "Blue")},
}};

/// The index of a colour in a table, `otherwise` for a colour that the table does not have.
[[nodiscard]] inline int indexOf(const std::array<Entry, 4> &table, const QColor &color,
                                 int otherwise)
{
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i].color == color.rgba())
            return static_cast<int>(i);
    }
    return otherwise;
}

[[nodiscard]] inline QColor colorAt(const std::array<Entry, 4> &table, int index)
{
    return QColor(table[static_cast<std::size_t>(index)].color);
}

[[nodiscard]] inline QString name(const Entry &entry)
{
    return QCoreApplication::translate("ColorToolWindow", entry.name);
}

} // namespace DrawingColors
