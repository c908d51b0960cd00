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
    Snapshot,
    Print
};

/// `mode` is a mode number of the main window. Whether a number pad or a shifted key sent a sign
/// does not matter.
[[nodiscard]] PresenterAction presenterAction(int key, Qt::KeyboardModifiers modifiers, int mode,
                                              bool fullScreen);
