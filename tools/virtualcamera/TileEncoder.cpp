#include "tools/virtualcamera/TileEncoder.h"

#include "tools/virtualcamera/JpegMarkers.h"

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

using namespace JpegMarkers;

namespace
{

constexpr int COLUMNS = 8;
constexpr int TILE_HEIGHT = 8;
constexpr int BLOCK_WIDTH = 16; // 4:2:2

/// Where the data after the marker begin: behind its length field for a segment with one.
std::size_t findSegment(const std::vector<std::uint8_t> &jpeg, std::uint8_t marker)
{
    std::size_t at = 2;
    while (at + 4 <= jpeg.size() && jpeg[at + 1] != marker)
        at += 2 + static_cast<std::size_t>(jpeg[at + 2] << 8 | jpeg[at + 3]);
    return at + 4;
}

std::size_t endOfHeader(const std::vector<std::uint8_t> &jpeg)
{
    const std::size_t scan = findSegment(jpeg, START_OF_SCAN);
    return scan - 2 + static_cast<std::size_t>(jpeg[scan - 2] << 8 | jpeg[scan - 1]);
}

/// libjpeg's state, released however the compression ends.
class Compressor
{
public:
    Compressor(int width, int height, int quality)
    {
        m_state.err = jpeg_std_error(&m_errors); // ends the program: only memory can run out here
        jpeg_create_compress(&m_state);
        jpeg_mem_dest(&m_state, &m_bytes, &m_size);
        m_state.image_width = static_cast<JDIMENSION>(width);
        m_state.image_height = static_cast<JDIMENSION>(height);
        m_state.input_components = 4;
        m_state.in_color_space = JCS_EXT_BGRX;
        jpeg_set_defaults(&m_state);
        jpeg_set_quality(&m_state, quality, TRUE);
        m_state.comp_info[0].h_samp_factor = 2;
        m_state.comp_info[0].v_samp_factor = 1;
        m_state.dct_method = JDCT_FASTEST;
        m_state.restart_interval = static_cast<unsigned>(width / BLOCK_WIDTH);
    }
    ~Compressor()
    {
        jpeg_destroy_compress(&m_state);
        std::free(m_bytes);
    }
    Compressor(const Compressor &) = delete;
    Compressor &operator=(const Compressor &) = delete;

    std::vector<std::uint8_t> run(const QImage &picture, QPoint corner)
    {
        jpeg_start_compress(&m_state, TRUE);
        while (m_state.next_scanline < m_state.image_height) {
            const int y = corner.y() + static_cast<int>(m_state.next_scanline);
            auto *row =
                const_cast<JSAMPROW>(picture.constScanLine(y) + std::ptrdiff_t{4} * corner.x());
            jpeg_write_scanlines(&m_state, &row, 1);
        }
        jpeg_finish_compress(&m_state);
        return {m_bytes, m_bytes + m_size};
    }

private:
    jpeg_compress_struct m_state{};
    jpeg_error_mgr m_errors{};
    unsigned char *m_bytes = nullptr;
    unsigned long m_size = 0;
};

} // namespace

TileEncoder::TileEncoder(QSize size, int quality)
    : m_size(size)
    , m_quality(quality)
    , m_tileWidth(size.width() / COLUMNS)
    , m_columns(COLUMNS)
    , m_tiles(static_cast<std::size_t>(COLUMNS * size.height() / TILE_HEIGHT))
{
    QImage blank(m_tileWidth, TILE_HEIGHT, QImage::Format_RGB32);
    blank.fill(Qt::black);
    m_header = compress(blank, blank.rect());
    m_header.resize(endOfHeader(m_header));
    const std::size_t frameHeader = findSegment(m_header, START_OF_FRAME);
    const auto put16 = [this](std::size_t at, int value) {
        m_header[at] = static_cast<std::uint8_t>(value >> 8);
        m_header[at + 1] = static_cast<std::uint8_t>(value & 0xFF);
    };
    put16(frameHeader + 1, size.height());
    put16(frameHeader + 3, size.width());
}

TileEncoder::~TileEncoder() = default;

void TileEncoder::update(const QImage &picture, const QRect &area)
{
    const QRect touched = area.intersected(QRect(QPoint(0, 0), m_size));
    if (touched.isEmpty())
        return;
    const int firstRow = touched.top() / TILE_HEIGHT;
    const int rows = touched.bottom() / TILE_HEIGHT - firstRow + 1;
    for (int column = touched.left() / m_tileWidth; column <= touched.right() / m_tileWidth;
         ++column) {
        const QRect strip(column * m_tileWidth, firstRow * TILE_HEIGHT, m_tileWidth,
                          rows * TILE_HEIGHT);
        store(compress(picture, strip), column, firstRow);
    }
}

std::vector<std::uint8_t> TileEncoder::frame() const
{
    std::size_t size = m_header.size() + 2 * m_tiles.size();
    for (const Bytes &tile : m_tiles)
        size += tile.size();
    Bytes jpeg;
    jpeg.reserve(size);
    jpeg = m_header;
    jpeg.reserve(size);
    for (std::size_t i = 0; i < m_tiles.size(); ++i) {
        jpeg.insert(jpeg.end(), m_tiles[i].begin(), m_tiles[i].end());
        const bool last = i + 1 == m_tiles.size();
        jpeg.push_back(MARKER);
        jpeg.push_back(last ? END_OF_IMAGE : static_cast<std::uint8_t>(FIRST_RESTART + i % 8));
    }
    return jpeg;
}

TileEncoder::Bytes TileEncoder::compress(const QImage &picture, const QRect &area) const
{
    return Compressor(area.width(), area.height(), m_quality).run(picture, area.topLeft());
}

/// Cuts the scan of a strip one tile wide at its restart markers.
void TileEncoder::store(const Bytes &jpeg, int column, int firstRow)
{
    const std::uint8_t *begin = jpeg.data() + endOfHeader(jpeg);
    const std::uint8_t *const end = jpeg.data() + jpeg.size();
    int row = firstRow;
    for (const std::uint8_t *at = begin; at + 1 < end; ++at) {
        const bool restart = at[0] == MARKER && (at[1] & 0xF8) == FIRST_RESTART;
        if (!restart && !(at[0] == MARKER && at[1] == END_OF_IMAGE))
            continue;
        m_tiles[static_cast<std::size_t>(row++) * static_cast<std::size_t>(m_columns) +
                static_cast<std::size_t>(column)]
            .assign(begin, at);
        begin = at + 2;
        ++at;
    }
}
