#pragma once

#include <QSlider>

/// The platform's slider in the clothes of the skin.
class Slider : public QSlider
{
    Q_OBJECT

public:
    Slider(Qt::Orientation orientation, QWidget *parent);

public slots:
    void showOrHide();
};
