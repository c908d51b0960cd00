#pragma once

#include <QImage>
#include <QRect>

#include <cstdint>
#include <memory>
#include <vector>

/// Encodes Motion-JPEG frames of a picture of which little changes: the picture is cut into tiles
/// of one restart interval each, every tile is kept encoded, and only the tiles that have changed
/// are encoded again. Not thread-safe.
class TileEncoder
{
public:
    /// The width is a multiple of 128, the height of 8; quality as libjpeg counts, 1 to 100.
    TileEncoder(QSize size, int quality);
    ~TileEncoder();

    /// Encodes the tiles that `area` touches. The picture is of Format_RGB32 and the encoder's
    /// size.
    void update(const QImage &picture, const QRect &area);

    /// The whole frame, 4:2:2, from the tiles as they are now.
    [[nodiscard]] std::vector<std::uint8_t> frame() const;

private:
    using Bytes = std::vector<std::uint8_t>;

    [[nodiscard]] Bytes compress(const QImage &picture, const QRect &area) const;
    void store(const Bytes &jpeg, int column, int firstRow);

    QSize m_size;
    int m_quality;
    int m_tileWidth;
    int m_columns;
    std::vector<Bytes> m_tiles; ///< entropy-coded data, row by row
    Bytes m_header;             ///< everything before them
};
