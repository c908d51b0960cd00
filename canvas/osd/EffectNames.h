#pragma once

#include <QCoreApplication>
#include <QString>

#include <array>
#include <cstddef>

/// The names of masks and effects, indexed by CanvasModes::MaskMode and CanvasModes::EffectMode:
/// endings of image names, and the effects' names as English source texts that are translated when
/// they are shown, as no catalogue is installed yet when tables are built.
namespace EffectNames
{

constexpr std::array<const char *, 5> maskIconNames{"", "CIRCLE", "RECTANGLE", "LEFT", "TOP"};
constexpr std::array<const char *, 4> effectIconNames{"COLOR", "BW", "NEGATIVE", "MOSAIC"};
constexpr std::array<const char *, 4> effectNames{
    QT_TRANSLATE_NOOP("EffectToolWindow", "Color"),
    QT_TRANSLATE_NOOP("EffectToolWindow", "B & W"),
    QT_TRANSLATE_NOOP("EffectToolWindow", "Negative"),
    QT_TRANSLATE_NOOP("EffectToolWindow", "Mosaic"),
};

/// The entry of a table; empty for a mode that the table does not know.
template <std::size_t N>
[[nodiscard]] QString nameOf(const std::array<const char *, N> &table, int mode)
{
    const auto index = static_cast<std::size_t>(mode);
    return index < N ? QString::fromLatin1(table[index]) : QString();
}

/// An effect's name in the user's language.
[[nodiscard]] inline QString translatedEffectName(int mode)
{
    const auto index = static_cast<std::size_t>(mode);
    return index < effectNames.size()
               ? QCoreApplication::translate("EffectToolWindow", effectNames[index])
               : QString();
}

} // namespace EffectNames
