#include "widgets/RadioButton.h"

#include "resources/Skin.h"

RadioButton::RadioButton(const QString &text, QWidget *parent, int x, int y)
    : QRadioButton(text, parent)
{
    initialiseSkin();
    setStyleSheet("QRadioButton {    color: white;    font-size: 14px;    spacing: "
                  "2px;}QRadioButton::indicator::unchecked {    image: "
                  "url(:/icons/settings_select_gray.png)}QRadioButton::indicator::checked {    "
                  "image: url(:/icons/settings_selected.png)}");
    move(x, y);
}
