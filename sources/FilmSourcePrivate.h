#pragma once

#include "sources/FilmSource.h"
#include "sources/ICaptureCB.h"
#include "sources/film/DisplayLink.h"
#include "sources/film/FilmPlayer.h"

#include <QImage>

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

/// What the display link's and the player's threads touch.
class FilmSourcePrivate
{
public:
    FilmSourcePrivate(ICaptureCB *receiver, std::unique_ptr<FilmPlayer> filmPlayer,
                      const FilmSource::MakeDisplayLink &makeDisplayLink)
        : callback(receiver)
        , player(std::move(filmPlayer))
        , displayLink(makeDisplayLink([this] { pullFrame(); }))
    {
    }

    ~FilmSourcePrivate()
    {
        displayLink.reset();
        {
            // What comes later finds nothing loaded.
            const std::lock_guard lock(mutex);
            loaded = false;
        }
        player.reset();
    }

    /// Shows the picture that is due, if it belongs to the film of that number.
    void displayPicture(quint64 ofFilm)
    {
        const std::lock_guard lock(mutex);
        if (loaded && ofFilm == film)
            showNewPicture();
    }

    /// Shows all that is due of the film of that number.
    void displayPicturesLeft(quint64 ofFilm)
    {
        const std::lock_guard lock(mutex);
        while (loaded && ofFilm == film && !stepping && showNewPicture()) {
        }
    }

    ICaptureCB *const callback;

    // Written on the GUI thread, read on all.
    std::atomic<bool> loaded{false};
    std::atomic<bool> playing{false};
    /// Pictures come from seeks alone.
    std::atomic<bool> stepping{false};

    // Written on the player's thread.
    /// Seconds; 0 when unknown.
    std::atomic<double> duration{0};
    /// The film is neither open nor given up yet.
    std::atomic<bool> opening{false};

    /// Guards film, and is held while a picture is taken from the player and shown and while
    /// the film is replaced. The GUI thread holds it for a replacement only.
    std::mutex mutex;
    /// The number that the player gave the present film, so that what belongs to one before is told
    /// apart; 0 without a film. Written on the GUI thread, which therefore reads it without the
    /// lock.
    quint64 film = 0;

    /// Takes the picture of the film before away; GUI thread.
    void showNothing()
    {
        const std::lock_guard lock(mutex);
        QImage black(m_shown, QImage::Format_RGB888);
        black.fill(Qt::black);
        callback->imageCaptured(black);
    }

    std::unique_ptr<FilmPlayer> player;
    std::unique_ptr<DisplayLink> displayLink;

private:
    void pullFrame()
    {
        const std::lock_guard lock(mutex);
        if (loaded && !stepping)
            showNewPicture();
    }

    bool showNewPicture()
    {
        return player->showNewPicture([this](const QImage &picture) {
            m_shown = picture.size();
            callback->imageCaptured(picture);
        });
    }

    /// The size of the last picture. Guarded by the mutex.
    QSize m_shown{1280, 720};
};
