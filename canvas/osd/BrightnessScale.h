#pragma once

#include <QPoint>
#include <QSize>
#include <QVector>

/// The brightness scale as a list of images to draw: an end, one segment a brightness step with a
/// long one in the middle, the other end, and a marker on the current step. Pure.
namespace BrightnessScale
{

enum class Piece { MinimumEnd, MaximumEnd, ShortSegment, LongSegment, Marker, CentreMarker };

struct PlacedPiece {
    Piece piece;
    /// Top left corner in widget coordinates.
    QPoint position;
};

inline bool operator==(const PlacedPiece &a, const PlacedPiece &b)
{
    return a.piece == b.piece && a.position == b.position;
}

/// Image widths in device-independent pixels; 0 for a missing image.
struct Widths {
    int minimumEnd = 0;
    int maximumEnd = 0;
    int shortSegment = 0;
    int longSegment = 0;
};

/// More steps than this are shown with this many segments, so that a wrong answer of a camera
/// cannot make the painting hang.
constexpr int MOST_SEGMENTS = 100;

/// In painting order. A maximum below the minimum leaves the two ends.
[[nodiscard]] QVector<PlacedPiece> layout(QSize widgetSize, int value, int minimum, int maximum,
                                          const Widths &widths);

} // namespace BrightnessScale
