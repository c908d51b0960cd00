#pragma once

#include <QImage>
#include <QSize>

#include <functional>
#include <optional>

class QIODevice;

/// Bitmap files that are not compressed, a few rows at a time: the toolkit's reader holds the whole
/// picture with four bytes a pixel.
class BmpPicture
{
public:
    /// Empty when the device holds no bitmap file, or one that can only be decoded whole. The
    /// device may stand anywhere and is left anywhere.
    [[nodiscard]] static std::optional<BmpPicture> open(QIODevice &device);

    [[nodiscard]] QSize size() const { return m_size; }

    /// Rows from `y` on as the toolkit's reader gives them; null where the file does not have them.
    [[nodiscard]] QImage rows(int y, int count);

private:
    BmpPicture(QIODevice &device, QByteArray header, QSize size, int rowBytes, bool fromTop);

    QIODevice *m_device;
    /// All that comes before the pixels.
    QByteArray m_header;
    QSize m_size;
    int m_rowBytes;
    bool m_fromTop;
};
