#pragma once

#include <QObject>
#include <QSize>

class CanvasMessage;
class CommandButtons;
class FilmSource;
class HorizontalSlider;
class ImageButton;
class ImageCanvas;
class ImageWidget;
class Slider;
class Popups;
struct WindowLayout;

/// The controls of Film mode: the bar of buttons, the volume slider and the position slider. Its
/// widgets are children of the window, and its buttons are added to the window's, which connects
/// them; what a button does closes the open pop-up first. GUI thread.
class FilmBar : public QObject
{
    Q_OBJECT

public:
    FilmBar(FilmSource *source, ImageCanvas *canvas, Popups *popups, CommandButtons *buttons,
            QWidget *window);

    [[nodiscard]] QSize barSize() const;
    [[nodiscard]] QSize volumeSize() const;
    /// The sentence over the canvas.
    [[nodiscard]] QWidget *message() const;
    void place(const WindowLayout &at);

    /// Shows the initial state of the mode; the volume slider is hidden until its button is
    /// checked.
    void enter();
    void leave();
    /// Shows or hides the volume slider as its button is checked.
    void showVolume();
    void showPosition();

    /// Lets the user choose a film, and plays it.
    void openFile();
    void play();
    void pause();
    void stop();
    void backward();
    void forward();
    /// Pauses a film that is running and starts any other.
    void playOrPause();

private:
    void createBar(CommandButtons *buttons);
    void createSliders();

    FilmSource *m_source;
    Popups *m_popups;
    QWidget *m_window;
    ImageWidget *m_bar = nullptr;
    ImageButton *m_volumeButton = nullptr;
    Slider *m_volume = nullptr;
    HorizontalSlider *m_position = nullptr;
    CanvasMessage *m_message;
};
