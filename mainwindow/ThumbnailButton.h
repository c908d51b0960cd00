#pragma once

#include <QImage>
#include <QPushButton>

/// One picture of the thumbnail strip with a coloured frame: red chosen, white under the pointer,
/// otherwise gray.
class ThumbnailButton : public QPushButton
{
    Q_OBJECT

public:
    explicit ThumbnailButton(QWidget *parent);

    void setImage(const QImage &image);

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_hovered = false;
    bool m_hasImage = false;
    QImage m_image;
};
