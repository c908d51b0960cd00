#pragma once

#include "mainwindow/Modes.h"
#include "settings/CanvasModes.h"

#include <Qt>

#include <cstddef>
#include <optional>
#include <vector>

/// Everything that the main window does on a button or a key. The buttons of a group stand in this
/// order in their panel, bar or card.
enum class Command {
    // The side panel
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
    Print,
    // The mode buttons, by mode number
    LiveMode,
    FilmMode,
    PhotographMode,
    DrawingBoardMode,
    // The film bar
    OpenFilm,
    PlayFilm,
    PauseFilm,
    StopFilm,
    SlowerFilm,
    FasterFilm,
    FilmVolume,
    // The photograph bar
    OpenPhotographs,
    PreviousPhotograph,
    Slideshow,
    NextPhotograph,
    Thumbnails,
    SlideshowInterval,
    // At the window's edge
    About,
    SidePanel,
    // The card, "More" last
    Undo,
    Redo,
    Present,
    HoldPresentation,
    BlankPresentation,
    PauseRecording,
    More,
    // On keys alone
    PlayOrPauseFilm,
    FullScreen,
    Leave,
    Help,
    NextMask,
    NextEffect,
    BlackPen,
    RedPen,
    YellowPen,
    BluePen,
    ThinnerPen,
    ThickerPen
};

/// The one table of commands. A row says where the button of a command stands and how it looks,
/// which slots of the main window a click, a hold or a press calls, in which modes the command
/// exists, which tool and which pop-up belong to it, and its keys. To add a command is to add a
/// row. Plain data; any thread.
namespace Commands
{

enum class Group {
    // Of the side panel, with a title each
    Noting,
    Assisting,
    Adjustment,
    Recording,
    // Elsewhere in the window
    Modes,
    FilmBar,
    PhotographBar,
    Edge,
    Card,
    /// Without a button.
    Keys
};
constexpr int PANEL_GROUP_COUNT = 4;

/// The kinds of pop-up windows.
enum class PopUp {
    None,
    /// Widths alone.
    Width,
    /// Widths and colours of lines.
    Line,
    /// Widths and colours of lines, and colours of areas.
    Shape,
    Text,
    FillBackground,
    Mask,
    Effect,
    Settings,
    About,
    More
};

/// How a button differs from one that is simply pressed; combined bit by bit.
enum Look : unsigned {
    Plain = 0,
    Checkable = 1,
    /// Checked when the window opens.
    Checked = 2,
    /// One of the buttons in the side panel, of which exactly one is checked.
    InToolGroup = 4,
    /// Is never checked, though it is in the tool group.
    NeverChecked = 8,
    /// Disabled at first. Its button stands on the card only while it is enabled, and then there is
    /// a place for it.
    AtTimes = 16
};

/// A row, with the functions that fill it in. Texts are marked source texts, translated in the main
/// window's context when they are shown; slots are coded as SLOT() codes them, null for none.
struct Row {
    Row(Command ofCommand, Group inGroup, const char *withSkin, const char *withText)
        : command(ofCommand)
        , group(inGroup)
        , skin(withSkin)
        , text(withText)
    {
    }

    Row &&clicks(const char *slot) &&;
    /// The slots of a button, or of a key, that acts for as long as it is held.
    Row &&lasts(const char *startSlot, const char *stopSlot) &&;
    /// The pop-up that a held button opens; its title belongs to the plain object context.
    Row &&holds(const char *slot, PopUp kind, const char *title = nullptr) &&;
    /// The pop-up that a click opens.
    Row &&opens(PopUp kind) &&;
    Row &&draws(CanvasModes::MouseMode mode) &&;
    Row &&in(Modes::Set set) &&;
    Row &&looks(unsigned bits) &&;
    /// Keys, each with its modifiers, as Qt::CTRL | Qt::Key_S.
    Row &&on(std::vector<int> all) &&;
    /// The command repeats while its key is held, as fast as its steps are shown.
    Row &&repeats() &&;

    Command command;
    Group group;
    /// Null without a button.
    const char *skin;
    /// The button's tip, or its caption, what a screen reader says, and what the list of keys says.
    const char *text;
    const char *clickSlot = nullptr;
    const char *holdSlot = nullptr;
    const char *startSlot = nullptr;
    const char *stopSlot = nullptr;
    PopUp popUp = PopUp::None;
    const char *popUpTitle = nullptr;
    std::optional<CanvasModes::MouseMode> tool;
    Modes::Set modes = Modes::ALL;
    unsigned look = Plain;
    std::vector<int> keys;
    bool repeating = false;
};

/// All rows, by command.
[[nodiscard]] const std::vector<Row> &rows();
[[nodiscard]] const Row &row(Command command);
/// The rows of a group, in their order.
[[nodiscard]] std::vector<Row> rowsOf(Group group);
/// Whether a button of that group stands in the side panel.
[[nodiscard]] bool inPanel(Group group);
/// The caption over a group of the side panel.
[[nodiscard]] const char *titleOf(Group group);

/// The tool of a canvas's mouse mode; nothing for a value outside the tools.
[[nodiscard]] std::optional<Command> ofTool(int mouseMode);
/// The command of a key in a mode; nothing if there is none. A key of the number pad counts as its
/// counterpart.
[[nodiscard]] std::optional<Command> ofKey(int key, Qt::KeyboardModifiers modifiers, int mode);

} // namespace Commands
