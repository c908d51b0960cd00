#include "canvas/picture/ScaledPicture.h"

const QImage &ScaledPicture::image(const FramePtr &picture, std::uint64_t serial, QSize size)
{
    if (!picture || size.isEmpty()) {
        release();
        return m_image;
    }
    if (m_valid && serial == m_serial && m_image.size() == size)
        return m_image;
    if (m_image.size() != size)
        m_image = QImage(size, QImage::Format_RGB32);
    if (m_image.isNull())
        return m_image;
    m_scaler.scale(picture->rows(),
                   {m_image.bits(), size.width(), size.height(), m_image.bytesPerLine(), 4});
    m_serial = serial;
    m_valid = true;
    return m_image;
}

void ScaledPicture::release()
{
    m_image = QImage();
    m_valid = false;
}
