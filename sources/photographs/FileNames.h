#pragma once

#include <QByteArray>
#include <QString>

/// File names as the disk has them, any bytes, and as texts. The toolkit's own conversion loses the
/// bytes that are no text in the system's encoding, and then no longer finds the file.
namespace FileNames
{

/// The text of a name or a path. A byte that is no text becomes one character of U+DC80 to U+DCFF,
/// which no valid text holds.
[[nodiscard]] QString decode(const QByteArray &name);

/// The bytes of such a text: encode(decode(x)) is x for every x.
[[nodiscard]] QByteArray encode(const QString &name);

/// The text with U+FFFD for those characters, for people to read.
[[nodiscard]] QString readable(const QString &name);

} // namespace FileNames
