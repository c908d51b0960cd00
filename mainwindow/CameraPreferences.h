#pragma once

#include "sources/camera/CameraIdentity.h"
#include "sources/camera/StandardControl.h"

#include <QSize>
#include <QString>

class CameraKeeper;
class LiveSource;

/// What the user has chosen for the camera on its page, remembered from one start of the program to
/// the next. GUI thread.
namespace CameraPreferences
{

/// Has the keeper and the source do what was chosen last, now and whenever a camera comes.
void restore(CameraKeeper &keeper, LiveSource &source);

/// Has the keeper keep that camera, and remembers it with its name.
void choose(CameraKeeper &keeper, const CameraChoice &choice, const QString &name);
/// The name of the chosen camera, also when it is not plugged in.
[[nodiscard]] QString chosenName();

/// Has the source turn its pictures over in that direction or no more.
void setMirrored(LiveSource &source, Qt::Orientation direction, bool on);

/// Has the source show pictures of that size; an empty one means that of the settings.
void setPreviewSize(LiveSource &source, QSize size);

/// Sets a control of the camera in use, for each camera apart.
void setControl(LiveSource &source, StandardControl control, std::int64_t value);
void setAutomatic(LiveSource &source, StandardControl control, bool on);

} // namespace CameraPreferences
