#include "tests/mainwindow/ScreenWatch.h"

#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

ScreenWatch::ScreenWatch(const QRect &area)
    : m_area(area)
    , m_thread([this] { run(); })
{
}

ScreenWatch::~ScreenWatch()
{
    m_ended = true;
    if (m_thread.joinable())
        m_thread.join();
}

QVector<QImage> ScreenWatch::end()
{
    m_ended = true;
    if (m_thread.joinable())
        m_thread.join();
    return m_pictures;
}

void ScreenWatch::run()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    do {
        xcb_get_image_reply_t *reply = xcb_get_image_reply(
            connection,
            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, qint16(m_area.x()),
                          qint16(m_area.y()), quint16(m_area.width()), quint16(m_area.height()),
                          ~0U),
            nullptr);
        if (!reply)
            break;
        QImage picture(m_area.size(), QImage::Format_RGB32);
        // A line of the screen's 32-bit pixels has no padding, neither has one of the picture.
        std::memcpy(picture.bits(), xcb_get_image_data(reply), std::size_t(picture.sizeInBytes()));
        std::free(reply);
        if (m_pictures.isEmpty() || m_pictures.last() != picture)
            m_pictures << picture;
        ++m_taken;
    } while (!m_ended);
    xcb_disconnect(connection);
}
