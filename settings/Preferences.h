#pragma once

#include <QString>

/// What the user has chosen beyond the settings: a store of its own, whose file does not exist
/// until the first choice. A file that cannot be read or written gives the defaults, and a line on
/// the terminal. GUI thread.
namespace Preferences
{

/// The number stored under that key; `otherwise` when there is none or it is outside the range.
[[nodiscard]] int number(const QString &key, int otherwise, int least, int most);
/// Written at once. A number that is stored already writes nothing.
void setNumber(const QString &key, int value);

/// The text under that key, empty when there is none.
[[nodiscard]] QString text(const QString &key);
/// Written at once, unless it is stored already.
void setText(const QString &key, const QString &value);

/// Where the file is, whether or not it exists.
[[nodiscard]] QString fileName();

} // namespace Preferences
