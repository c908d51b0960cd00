#pragma once

#include "mainwindow/ButtonTable.h"

#include <QString>

#include <optional>

/// Which buttons a mode offers and how the panel shows what a canvas is set to. Pure functions.
namespace ModeRules
{

/// The modes of the main window, which are also the order of the mode buttons.
enum Mode { Live, Film, Photograph, DrawingBoard };

/// Whether a panel button can be used in a mode; buttons without a rule always can.
[[nodiscard]] bool enabled(ButtonTable::PanelButton button, int mode);

/// The tool button of a canvas's mouse mode; nothing for a value outside the tools.
[[nodiscard]] std::optional<ButtonTable::PanelButton> toolButton(int mouseMode);

/// The skin of the mask button; no mask looks like the circle, and so does an unknown value.
[[nodiscard]] QString maskSkin(int maskMode);

/// The skin of the effect button; an unknown value looks like no effect.
[[nodiscard]] QString effectSkin(int effectMode);

} // namespace ModeRules
