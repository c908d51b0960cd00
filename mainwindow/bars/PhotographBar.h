#pragma once

#include <QObject>
#include <QSize>

#include <array>

class CanvasMessage;
class CommandButtons;
class HorizontalSlider;
class ImageButton;
class ImageCanvas;
class ImageWidget;
class PhotographSource;
class QLabel;
class QWidget;
class Slider;
class ThumbnailWidget;
class Popups;
struct WindowLayout;

/// The positions of the interval slider, in seconds.
constexpr std::array<int, 6> PHOTOGRAPH_PLAY_INTERVALS{1, 2, 5, 10, 15, 30};

/// The controls of Photograph mode: the bar of buttons, the slideshow interval, the picture index
/// and the thumbnail strip with its scroll bar. Its widgets are children of the window, and its
/// buttons are added to the window's, which connects them; what a button does closes the open
/// pop-up first; the strip lies on the canvas. GUI thread.
class PhotographBar : public QObject
{
    Q_OBJECT

public:
    PhotographBar(PhotographSource *source, ImageCanvas *canvas, Popups *popups,
                  CommandButtons *buttons, QWidget *window);

    [[nodiscard]] QSize barSize() const;
    [[nodiscard]] ThumbnailWidget *thumbnails() const;
    /// The sentence over the canvas.
    [[nodiscard]] QWidget *message() const;
    void place(const WindowLayout &at);

    /// Shows the initial state of the mode; strip and interval are hidden until their buttons are
    /// checked.
    void enter();
    void leave();

    /// Lets the user choose a picture, and opens its folder.
    void openDirectory();
    void previous();
    void next();
    /// Starts or stops the slideshow as its button is checked.
    void playOrStop();
    void playDone();
    /// Show or hide as their buttons are checked.
    void showThumbnails();
    void showInterval();
    /// `place` is one of the interval slider's positions.
    void setInterval(int place);
    /// `id` counts from 0 and is shown from 1. Tells the user when that photograph cannot be shown.
    void showIndex(int id);

signals:
    /// The user has moved the interval slider to another position.
    void intervalMoved(int place);

private:
    /// Sets the button of the slideshow to the state of the source, as not every stop has a signal.
    void showPlaying();
    void createBar(CommandButtons *buttons);
    void createInterval();
    void createIndex();
    void createThumbnails(ImageCanvas *canvas);

    PhotographSource *m_source;
    Popups *m_popups;
    QWidget *m_window;
    ImageWidget *m_bar = nullptr;
    ImageButton *m_slideshowButton = nullptr;
    ImageButton *m_thumbnailsButton = nullptr;
    ImageButton *m_intervalButton = nullptr;
    Slider *m_interval = nullptr;
    QLabel *m_intervalLabel = nullptr;
    QLabel *m_indexLabel = nullptr;
    HorizontalSlider *m_scrollBar = nullptr;
    ThumbnailWidget *m_thumbnails = nullptr;
    CanvasMessage *m_message;
};
