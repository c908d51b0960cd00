#pragma once

#include <QString>

/// Why a camera could not be opened, told in the terminal with what helps. These functions read
/// /proc, so they belong to a thread that may wait.
namespace OpenFailure
{

/// The device file of a camera at that place of the bus.
[[nodiscard]] QString nodeOf(int busNumber, int deviceAddress);

/// The other programs that have the file open, "NAME (process NUMBER)", with commas between; empty
/// when the system does not tell, as of other users' programs.
[[nodiscard]] QString holdersOf(const QString &node, const QString &processes);

/// `error` is libuvc's code.
void tell(int error, const QString &node);

} // namespace OpenFailure
