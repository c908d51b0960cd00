#pragma once

/// The libraries that stand between a program and the kernel when it uses the emulated camera.
namespace Preload
{

/// Starts this very program again with the libraries preloaded, unless they are; returns only if
/// they are or if that fails (false).
[[nodiscard]] bool ensure(char **arguments);

/// Removes what killed cameras of earlier runs have left in the temporary folder, and marks `root`
/// as belonging to this process so that a later run can do the same.
void sweepLeftovers();
void markOwner(const char *root);

} // namespace Preload
