#include "widgets/ImageWidget.h"

#include "resources/SkinImages.h"

#include <QPainter>

ImageWidget::ImageWidget(const QImage &image, QWidget *parent)
    : QWidget(parent)
    , m_image(image)
{
    setFixedSize(SkinImages::layoutSize(m_image));
}

void ImageWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    painter.drawImage(QPoint(0, 0), m_image);
}
