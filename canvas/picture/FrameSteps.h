#pragma once

#include "canvas/picture/PixelRows.h"
#include "settings/CanvasModes.h"

#include <QRect>
#include <QSize>

class Overlay;
class Frame;

/// The single steps of the picture pipeline, on rows of pixels. Pure; any thread. Source and
/// destination have the same bytes a pixel. No step reads or writes the padding between rows,
/// except that wide loads and stores may touch the bytes that follow the very last row
/// (Frame::SLACK); the destination's bytes after a row are never changed.
namespace FrameSteps
{

/// Copies the pixels. Source and destination have one size and do not overlap.
void copy(const ConstPixelRows &source, const PixelRows &destination);

/// Sets the fourth byte of every 4-byte pixel of a block without padding to 255.
void makeOpaque(void *data, QSize size);

/// Puts the last row first, in place, padding included.
void mirrorInPlace(const PixelRows &picture);

/// Writes the frame's pixels into a caller's buffer as one block of width * height pixels of 3 or
/// 4 bytes (RGB888 or RGB32), the last row first when mirrored.
void copyOut(const Frame &frame, void *data, bool mirror, bool rgb32);

/// Turns by quarters, clockwise. `part` is what is wanted of the turned picture, and the
/// destination has the part's size. No overlap.
void turn(const ConstPixelRows &source, int quarterTurns, const QRect &part,
          const PixelRows &destination);

/// Lays the layer over the destination, in place. `part` says which part of the layer the
/// destination shows. The cost depends on what was drawn, not on the size of the picture.
void layOver(const Overlay &layer, const QRect &part, const PixelRows &destination);

/// Each pixel's grey is truncate(b2 * 0.114 + (b1 * 0.587 + b0 * 0.2989)), computed as doubles in
/// that order, with b0 to b2 the bytes as they lie in memory. A fourth byte is kept. One size;
/// source and destination may be the same rows.
void grey(const ConstPixelRows &source, const PixelRows &destination);

/// Inverts the three colours and keeps a fourth byte. One size; may be the same rows.
void negative(const ConstPixelRows &source, const PixelRows &destination);

/// Averages blocks of 8 x 8 pixels from the top left corner, the last ones cut short by the
/// edges, each byte by integer division. A fourth byte is kept. One size; may be the same rows.
void mosaic(const ConstPixelRows &source, const PixelRows &destination);

/// Blackens what the mask covers, in place; a fourth byte is kept except by the half masks, which
/// fill with opaque black.
void mask(CanvasModes::MaskMode mode, const PixelRows &picture);

/// Fills with opaque black.
void fillBlack(const PixelRows &picture);

} // namespace FrameSteps
