#pragma once

#include <QString>

/// What a camera calls itself, to be shown: one line of at most 60 printable characters, without
/// those that turn the writing direction or hide. Empty when nothing of it is left.
[[nodiscard]] QString shownCameraName(const QString &name);
