#pragma once

#include "canvas/model/CanvasModel.h"

#include <QString>

/// Saves what a canvas says is to be saved. Any thread.
namespace ShotSaver
{

struct Outcome {
    /// Whether the shot was taken, even if its file could not be written.
    bool taken = false;
    /// The file, or the folder that did not answer, and why, in the system's words; null when
    /// nothing went wrong.
    QString failedPath;
    QString reason;
};

/// Writes the shot into its folder as a JPEG file that is named for the moment. A shot stays armed
/// while its folder is missing or does not answer. Waits 2.5 seconds at most.
[[nodiscard]] Outcome save(CanvasModel &model, const CanvasModel::Shot &shot);

} // namespace ShotSaver
