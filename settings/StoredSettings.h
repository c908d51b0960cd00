#pragma once

#include <QStringList>

class QSettings;

/// The numbers that a settings file may hold.
namespace StoredSettings
{

/// What the file holds that no setting can be, as "key=value"; empty when all is well. Any thread.
[[nodiscard]] QStringList outOfRange(const QSettings &settings);

} // namespace StoredSettings
