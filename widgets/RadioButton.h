#pragma once

#include <QRadioButton>

/// The platform's radio button with the images of the skin.
class RadioButton : public QRadioButton
{
    Q_OBJECT

public:
    RadioButton(const QString &text, QWidget *parent, int x, int y);
};
