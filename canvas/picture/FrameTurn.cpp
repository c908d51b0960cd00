// The quarter turns of FrameSteps.

#include "canvas/picture/FrameKernels.h"
#include "canvas/picture/FrameSteps.h"

#include <algorithm>
#include <cstring>

namespace
{

/// The tile that the turning kernel writes at once, and the rows of a band that is turned before
/// the next one: 64 pixels are three cache lines of the source.
constexpr int TURN_TILE_WIDTH = 16;
constexpr int TURN_TILE_HEIGHT = 4;
constexpr int TURN_BAND = 64;

/// How the source is walked through along the destination's rows and columns, in bytes.
struct TurnedWay {
    const uchar *start;
    std::ptrdiff_t alongX;
    std::ptrdiff_t alongY;
};

TurnedWay turnedWay(const ConstPixelRows &source, int quarterTurns)
{
    const std::ptrdiff_t right = source.pixelBytes;
    const std::ptrdiff_t down = source.stride;
    switch (quarterTurns) {
    case 1:
        return {source.pixel(0, source.height - 1), -down, right};
    case 2:
        return {source.pixel(source.width - 1, source.height - 1), -right, -down};
    case 3:
        return {source.pixel(source.width - 1, 0), down, -right};
    default:
        return {source.data, right, down};
    }
}

/// Turns pixel by pixel what the tiles leave over; `area` is in destination coordinates.
void turnPixels(const TurnedWay &way, const QRect &area, const PixelRows &destination)
{
    const auto bytes = static_cast<std::size_t>(destination.pixelBytes);
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const uchar *in = way.start + y * way.alongY + area.left() * way.alongX;
        uchar *out = destination.pixel(area.left(), y);
        for (int x = 0; x < area.width(); ++x, in += way.alongX, out += bytes)
            std::memcpy(out, in, bytes);
    }
}

/// An odd number of quarter turns of 3-byte pixels by tiles, in bands of rows that keep the
/// source's lines and the destination's pages near.
void turnTiles(const TurnedWay &way, const PixelRows &destination)
{
    const FrameKernels &kernels = FrameKernels::current();
    const int right = destination.width / TURN_TILE_WIDTH * TURN_TILE_WIDTH;
    const int bottom = destination.height / TURN_TILE_HEIGHT * TURN_TILE_HEIGHT;
    for (int band = 0; band < bottom; band += TURN_BAND) {
        const int bandEnd = std::min(band + TURN_BAND, bottom);
        for (int x = 0; x < right; x += TURN_TILE_WIDTH) {
            for (int y = band; y < bandEnd; y += TURN_TILE_HEIGHT) {
                // Four source columns from the left are rows upwards when the turn is to the left.
                const bool down = way.alongY > 0;
                const int firstRow = down ? y : y + TURN_TILE_HEIGHT - 1;
                kernels.turnTile(way.start + firstRow * way.alongY + x * way.alongX, way.alongX,
                                 destination.pixel(x, firstRow),
                                 down ? destination.stride : -destination.stride);
            }
        }
    }
    turnPixels(way, {right, 0, destination.width - right, bottom}, destination);
    turnPixels(way, {0, bottom, destination.width, destination.height - bottom}, destination);
}

} // namespace

void FrameSteps::turn(const ConstPixelRows &source, int quarterTurns, const QRect &part,
                      const PixelRows &destination)
{
    TurnedWay way = turnedWay(source, quarterTurns);
    way.start += part.y() * way.alongY + part.x() * way.alongX;
    if (source.pixelBytes == 3 && quarterTurns % 2 != 0)
        turnTiles(way, destination);
    else
        turnPixels(way, {0, 0, part.width(), part.height()}, destination);
}
