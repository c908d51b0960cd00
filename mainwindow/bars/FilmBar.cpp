#include "mainwindow/bars/FilmBar.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/CanvasMessage.h"
#include "mainwindow/CommandButtons.h"
#include "mainwindow/Popups.h"
#include "mainwindow/WindowLayout.h"
#include "mainwindow/bars/BarButtons.h"
#include "resources/SkinImages.h"
#include "settings/Config.h"
#include "sources/FilmSource.h"
#include "widgets/FileDialogs.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"
#include "widgets/ImageWidget.h"
#include "widgets/Slider.h"
#include "widgets/ToolTips.h"

#include <QCoreApplication>

namespace
{

constexpr int FULL = 100;

QString sentenceOn(FilmFault fault)
{
    switch (fault) {
    case FilmFault::Unreadable:
        return QCoreApplication::translate("MainWindow",
                                           "The film cannot be shown: the file cannot be read.");
    case FilmFault::NoFilm:
        return QCoreApplication::translate(
            "MainWindow", "The film cannot be shown: the file is damaged or is not a film.");
    case FilmFault::NoPicture:
        return QCoreApplication::translate("MainWindow", "There is no picture in this film.");
    case FilmFault::DecoderMissing:
        return QCoreApplication::translate(
            "MainWindow", "The film cannot be shown: a decoder for it is missing (packages "
                          "gstreamer1.0-libav, gstreamer1.0-plugins-bad).");
    case FilmFault::NotAnswering:
        return QCoreApplication::translate(
            "MainWindow", "The film cannot be shown: its disk or network does not answer.");
    case FilmFault::SoundNotAnswering:
        return QCoreApplication::translate(
            "MainWindow", "The film plays without sound: the sound system does not answer.");
    case FilmFault::BrokenOff:
        return QCoreApplication::translate("MainWindow", "The film cannot be read any further.");
    }
    return {};
}

} // namespace

FilmBar::FilmBar(FilmSource *source, ImageCanvas *canvas, Popups *popups, CommandButtons *buttons,
                 QWidget *window)
    : QObject(window)
    , m_source(source)
    , m_popups(popups)
    , m_window(window)
    , m_message(new CanvasMessage(canvas))
{
    createBar(buttons);
    createSliders();
    connect(source, &FilmSource::faulty, m_message, [this](FilmFault fault) {
        m_message->pass(sentenceOn(fault));
        // A film that was given up ticks no more.
        showPosition();
    });
}

QSize FilmBar::barSize() const
{
    return m_bar->size();
}

QSize FilmBar::volumeSize() const
{
    return m_volume->size();
}

QWidget *FilmBar::message() const
{
    return m_message;
}

void FilmBar::place(const WindowLayout &at)
{
    m_bar->move(at.filmBar);
    m_volume->move(at.volumeSlider);
    m_position->move(at.filmPosition.topLeft());
    m_position->setFixedSize(at.filmPosition.size());
}

void FilmBar::enter()
{
    m_bar->show();
    m_bar->raise();
    m_position->show();
    m_source->resumeCapture();
}

void FilmBar::leave()
{
    m_bar->hide();
    m_volumeButton->setChecked(false);
    m_volume->hide();
    m_position->hide();
    m_source->pauseCapture();
}

void FilmBar::showVolume()
{
    m_popups->closeAny();
    m_volume->setVisible(m_volumeButton->isChecked());
    m_volume->raise();
}

void FilmBar::showPosition()
{
    m_position->setValue(m_source->currentPosition());
}

void FilmBar::openFile()
{
    m_popups->closeAny();
    const QString path = FileDialogs::openFile(
        m_window, Config::recordPath(),
        QCoreApplication::translate("MainWindow", "All supported media files (*.avi *.mov *.mp4)"));
    if (path.isEmpty() || !FileDialogs::exists(path))
        return;
    m_message->pass({});
    m_source->setFile(path);
}

void FilmBar::play()
{
    m_popups->closeAny();
    m_source->play();
}

void FilmBar::pause()
{
    m_popups->closeAny();
    m_source->pause();
}

void FilmBar::stop()
{
    m_popups->closeAny();
    m_source->stop();
}

void FilmBar::backward()
{
    m_popups->closeAny();
    m_source->backward();
}

void FilmBar::forward()
{
    m_popups->closeAny();
    m_source->forward();
}

void FilmBar::playOrPause()
{
    if (m_source->moving())
        pause();
    else
        play();
}

void FilmBar::createBar(CommandButtons *buttons)
{
    m_bar = new ImageWidget(SkinImages::load(":/icons/Background/FILM_CONTROL_BK.png"), m_window);
    BarButtons::create(Commands::Group::FilmBar, m_bar, buttons);
    m_volumeButton = buttons->of(Command::FilmVolume);
    m_bar->hide();
}

void FilmBar::createSliders()
{
    m_volume = new Slider(Qt::Vertical, m_window);
    m_volume->setFixedSize(
        SkinImages::layoutSize(SkinImages::load(":/icons/Background/POP_VOL_BK.png")));
    m_volume->setRange(1, FULL);
    m_volume->setValue(FULL);
    m_volume->setAccessibleName(QCoreApplication::translate("MainWindow", "Volume"));
    ToolTips::addName(m_volume);
    connect(m_volume, SIGNAL(valueChanged(int)), m_source, SLOT(setVolume(int)));
    m_volume->hide();

    m_position =
        new HorizontalSlider(SkinImages::load(":/icons/Background/FILM_SCROLL_BAR.png"), m_window);
    m_position->setHandleWidth(22);
    m_position->setRange(0, FULL);
    m_position->setAccessibleName(
        QCoreApplication::translate("MainWindow", "Position in the film"));
    ToolTips::addName(m_position);
    connect(m_position, SIGNAL(valueChanged(int)), m_source, SLOT(setPosition(int)));
    m_position->hide();
}
