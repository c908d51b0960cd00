#pragma once

/// A video encoder named "heldencoder" for the media library that takes as long to be opened as a
/// test says, and then turns out not to work: as the driver of a graphics card that is broken.
namespace HeldEncoder
{

/// Makes the encoder known, held.
void install();
/// Returns when someone is trying to open it; false when nobody does within 20 s.
bool waitUntilTried();
/// Lets it fail.
void release();

} // namespace HeldEncoder
