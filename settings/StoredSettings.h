#pragma once

#include <QStringList>

class QSettings;

/// Where the settings files lie, and the numbers that they may hold.
namespace StoredSettings
{

/// Gives the application the names that its settings files are found by. Before anything reads
/// them.
void nameFiles();

/// What the file holds that no setting can be, as "key=value"; empty when all is well. Any thread.
[[nodiscard]] QStringList outOfRange(const QSettings &settings);

} // namespace StoredSettings
