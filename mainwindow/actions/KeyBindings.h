#pragma once

#include <Qt>

/// What the keys of a keyboard or of a presenter remote do. A pure function.
enum class PresenterAction {
    None,
    PreviousPhotograph,
    NextPhotograph,
    /// Plays or pauses the film.
    PlayOrPause,
    /// Freezes or releases the live picture.
    Freeze,
    ZoomIn,
    ZoomOut,
    ToggleFullScreen,
    /// Closes the pop-up window that is open.
    ClosePopUp,
    Snapshot,
    Print
};

/// What the meaning of a key depends on.
struct PresenterContext {
    /// A mode number of the main window.
    int mode = 0;
    bool fullScreen = false;
    /// A pop-up window is to be seen.
    bool popUpShown = false;
};

/// Whether a number pad or a shifted key sent a sign does not matter.
[[nodiscard]] PresenterAction presenterAction(int key, Qt::KeyboardModifiers modifiers,
                                              const PresenterContext &context);
