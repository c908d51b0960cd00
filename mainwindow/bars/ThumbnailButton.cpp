#include "mainwindow/bars/ThumbnailButton.h"

#include "widgets/ToolTips.h"

#include <QPainter>

ThumbnailButton::ThumbnailButton(QWidget *parent)
    : TabFocusButton(parent)
{
    setFlat(true);
    setCheckable(true);
    ToolTips::add(this);
}

void ThumbnailButton::setImage(const QImage &image)
{
    m_image = image;
    m_hasImage = true;
    update();
}

void ThumbnailButton::enterEvent(QEvent *)
{
    m_hovered = true;
    update();
}

void ThumbnailButton::leaveEvent(QEvent *)
{
    m_hovered = false;
    update();
}

void ThumbnailButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QBrush(Qt::black, Qt::SolidPattern));
    if (!m_image.isNull()) {
        // An image for a sharp screen has more pixels than its place in the layout.
        const QSize size = m_image.size() / m_image.devicePixelRatioF();
        painter.drawImage((width() - size.width()) / 2, (height() - size.height()) / 2, m_image);
    }

    Qt::GlobalColor frame = Qt::gray;
    if (isDown() || isChecked())
        frame = Qt::red;
    else if (m_hovered)
        frame = Qt::white;
    painter.setPen(QPen(frame, 2.0, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(QRect(QPoint(1, 1), QPoint(width() - 2, height() - 2)));
    if (!isChecked())
        return;
    // The second line is for users who cannot tell the red from the gray.
    painter.setPen(Qt::white);
    painter.drawRect(rect().adjusted(2, 2, -3, -3));
}
