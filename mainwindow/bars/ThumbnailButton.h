#pragma once

#include "widgets/TabFocusButton.h"

#include <QImage>

/// One picture of the thumbnail strip with a coloured frame: red when it is chosen, with a white
/// line inside, white under the pointer, otherwise gray.
class ThumbnailButton : public TabFocusButton
{
    Q_OBJECT

public:
    explicit ThumbnailButton(QWidget *parent);

    /// The image is centred at the size that its device pixel ratio gives; null leaves it black.
    void setImage(const QImage &image);
    [[nodiscard]] bool hasImage() const { return m_hasImage; }
    [[nodiscard]] QImage image() const { return m_image; }

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_hovered = false;
    bool m_hasImage = false;
    QImage m_image;
};
