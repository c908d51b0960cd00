#pragma once

#include "sources/camera/CameraIdentity.h"

#include <QString>

class CameraKeeper;
class LiveSource;

/// What the user has chosen for the camera on its page, remembered from one start of the program to
/// the next. GUI thread.
namespace CameraPreferences
{

/// Has the keeper and the source do what was chosen last.
void restore(CameraKeeper &keeper, LiveSource &source);

/// Has the keeper keep that camera, and remembers it with its name.
void choose(CameraKeeper &keeper, const CameraChoice &choice, const QString &name);
/// The name of the chosen camera, also when it is not plugged in.
[[nodiscard]] QString chosenName();

/// Has the source turn its pictures over in that direction or no more.
void setMirrored(LiveSource &source, Qt::Orientation direction, bool on);

} // namespace CameraPreferences
