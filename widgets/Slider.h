#pragma once

#include <QSlider>

/// The platform's slider with the images of the skin. It takes the focus from the tabulator key
/// alone.
class Slider : public QSlider
{
    Q_OBJECT

public:
    Slider(Qt::Orientation orientation, QWidget *parent);

public slots:
    void showOrHide();
};
