#pragma once

#include <QImage>
#include <QWidget>

/// A picture as a widget, fixed to the picture's size.
class ImageWidget : public QWidget
{
    Q_OBJECT

public:
    ImageWidget(const QImage &image, QWidget *parent);

protected:
    [[nodiscard]] const QImage &image() const { return m_image; }

    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_image;
};
