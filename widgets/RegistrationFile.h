#pragma once

#include "widgets/RegistrationItem.h"

#include <QVector>

#include <optional>

class QIODevice;
class QString;

/// Reading and writing of registration files (".rf"): a 32-bit signed count, then for each item its
/// name and its content, each a 32-bit byte length (0xFFFFFFFF for a null string) and that many
/// bytes of UTF-16 text; all numbers and characters big-endian, without a header.
namespace RegistrationFile
{

/// Nothing when the device does not hold as many items as it says, or says a negative number. The
/// count is not trusted: memory grows with what is really there.
[[nodiscard]] std::optional<QVector<RegistrationItem>> read(QIODevice &device);

/// False when the device did not take everything.
[[nodiscard]] bool write(QIODevice &device, const QVector<RegistrationItem> &items);
/// Replaces the file as a whole, or leaves it as it was and returns false.
[[nodiscard]] bool write(const QString &fileName, const QVector<RegistrationItem> &items);

} // namespace RegistrationFile
