#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <functional>

class QIODevice;

/// PNG pictures as they lie in the file, decoded row by row. Any thread.
namespace PngReader
{

/// What a file says before its pixels.
struct Header {
    QSize size;
    /// Whether there is an alpha channel or a transparent colour.
    bool isTransparent = false;
    /// Whether the picture comes in seven passes instead of from top to bottom.
    bool isInterlaced = false;
    /// The ICC profile; empty when there is none. Gamma and primaries without a profile do not
    /// count, as programs write the screen's by habit.
    QByteArray profile;
};

/// Some pixels of one row of the picture.
struct Row {
    /// One row in RGB888, or in RGBA8888 where the picture is transparent; valid during the call.
    QImage pixels;
    int y = 0;
    /// Where the first pixel stands in the row, and how far the next one is.
    int left = 0;
    int step = 1;
    /// The rectangle to the right of and below each pixel that has no other colour yet.
    QSize cell{1, 1};
};

/// Is told the header before the first row; false ends the reading.
using Begin = std::function<bool(const Header &header)>;
/// Is told the rows from top to bottom, those of an interlaced picture in each of its passes.
using Take = std::function<void(const Row &row)>;

/// Whether the device holds a PNG file. Its position afterwards is not defined.
[[nodiscard]] bool isPng(QIODevice &device);

/// Reads the file from its beginning. A file that is damaged or ends early gives the rows before
/// that place.
void read(QIODevice &device, const Begin &begin, const Take &take);

} // namespace PngReader
