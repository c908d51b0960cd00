#include "widgets/Slider.h"

#include "resources/Skin.h"

Slider::Slider(Qt::Orientation orientation, QWidget *parent)
    : QSlider(orientation, parent)
{
    initialiseSkin();
    // After a click, keys still have to reach the commands of the window.
    setFocusPolicy(Qt::TabFocus);
    setStyleSheet(
        "QSlider::groove:horizontal {  border-image: "
        "url(:/icons/Background/TIME_SLIDE_BK_1.png);}QSlider::handle:horizontal {  image: "
        "url(:/icons/Background/TIME_SLIDE_ADJUSTMENT.png);}QSlider::groove:vertical {  "
        "border-image: url(:/icons/Background/POP_VOL_BK.png);  border-width: "
        "10px}QSlider::handle:vertical {  image: "
        "url(:/icons/Background/TIME_SLIDE_ADJUSTMENT.png);}");
}

void Slider::showOrHide()
{
    setVisible(!isVisible());
}
