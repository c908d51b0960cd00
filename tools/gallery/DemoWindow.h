#pragma once

#include "widgets/StyleWindow.h"

class ImageButton;
class Panel;

/// The look of the main window, put together from the skin and its widgets without any function, to
/// judge the artwork in its place.
class DemoWindow : public StyleWindow
{
    Q_OBJECT

public:
    enum class Mode { Live, Film, Photograph };

    /// `picture` stands in the middle as a frame of the camera would; null for the start picture.
    DemoWindow(Mode mode, const QImage &picture);

    void reposition() override;

private:
    void addModeButtons(Mode mode);
    void addPanel(Mode mode);
    void addBar(Mode mode);

    QWidget *m_picture;
    QWidget *m_bar = nullptr;
    QWidget *m_strip = nullptr;
    QWidget *m_volume = nullptr;
    QWidget *m_interval = nullptr;
    QWidget *m_intervalText = nullptr;
    QWidget *m_index = nullptr;
    QWidget *m_about;
    Panel *m_panel = nullptr;
};
