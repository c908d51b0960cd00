#pragma once

#include "settings/CanvasModes.h"

#include <array>

/// Every button of the main window as rows of data: what it looks like, what it is called and which
/// slot it drives. Texts are marked source texts, translated when they are shown; slots are coded
/// as SLOT() codes them, null where a button has none. Plain data, usable from any thread.
namespace ButtonTable
{

enum class PanelGroup { Noting, Assisting, Adjustment, Recording };
constexpr int PANEL_GROUP_COUNT = 4;

/// The buttons of the side panel in the order in which they stand in it.
enum class PanelButton {
    Line,
    Rectangle,
    Freehand,
    Circle,
    Arrow,
    Triangle,
    Eraser,
    Text,
    EraseAll,
    Clip,
    Hand,
    FillBackground,
    Mask,
    Effect,
    ZoomOut,
    ZoomIn,
    ZoomReset,
    AutoFocus,
    BrightnessDown,
    BrightnessUp,
    Rotate,
    Freeze,
    Record,
    Snapshot,
    Settings,
    Print
};
constexpr int PANEL_BUTTON_COUNT = 26;

/// What is done to a panel button once it stands in the panel; combined bit by bit.
enum After : unsigned {
    Nothing = 0,
    Checked = 1,
    MadeCheckable = 2,
    MadeUncheckable = 4,
    HiddenAndDisabled = 8
};

struct PanelRow {
    PanelButton button;
    PanelGroup group;
    const char *skin;
    const char *toolTip;
    const char *clickSlot;
    const char *holdSlot;
    bool inToolGroup;
    unsigned after;
};

struct ModeRow {
    const char *skin;
    const char *text;
};

/// A button of the film or the photograph bar; x in pixels from the bar's left edge. The name is
/// its tip and what a screen reader says.
struct BarRow {
    const char *skin;
    int x;
    const char *slot;
    bool checkable;
    const char *name;
};

/// A drawing tool whose pop-up has width, colour and fill rows. The title belongs to the plain
/// object context, the captions to the main window's.
struct ColorToolRow {
    PanelButton button;
    CanvasModes::MouseMode mouseMode;
    const char *title;
    const char *widthCaption;
    bool colorRow;
    bool fillRow;
};

/// Titles of the panel's groups, by PanelGroup.
[[nodiscard]] const std::array<const char *, PANEL_GROUP_COUNT> &groupTitles();
/// By PanelButton.
[[nodiscard]] const std::array<PanelRow, PANEL_BUTTON_COUNT> &panelRows();
/// By mode number.
[[nodiscard]] const std::array<ModeRow, 4> &modeRows();
[[nodiscard]] const std::array<BarRow, 7> &filmBarRows();
[[nodiscard]] const std::array<BarRow, 6> &photographBarRows();
[[nodiscard]] const std::array<ColorToolRow, 7> &colorToolRows();

} // namespace ButtonTable
