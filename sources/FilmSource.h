#pragma once

#include "sources/film/FilmPlayer.h"
#include "sources/film/FilmStepper.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class DisplayLink;
class FilmSourcePrivate;
class ICaptureCB;
class QElapsedTimer;
class QTimer;

/// Plays a video file into a canvas: play, pause, stop, seek by percentage, rewind and fast forward
/// at fixed speed steps, volume. Winding is done by seeking the paused player every 100 ms.
///
/// All operations belong to the GUI thread, and so do the callback's refresh operations. Pictures
/// reach the callback on the display link's thread, those of seeks on the player's thread, never
/// two at a time. The destructor joins both threads; the callback must outlive it.
class FilmSource : public QObject
{
    Q_OBJECT

public:
    FilmSource(ICaptureCB *callback, QObject *parent);
    /// Over a player and a display link of the caller's.
    using MakeDisplayLink = std::function<std::unique_ptr<DisplayLink>(std::function<void()> tick)>;
    FilmSource(ICaptureCB *callback, QObject *parent, std::unique_ptr<FilmPlayer> player,
               const MakeDisplayLink &makeDisplayLink);
    ~FilmSource() override;

    /// Opens and plays a file; always true. A film that cannot be opened counts as loaded, with the
    /// duration 0, is paused as soon as that is known, and shows black. So does one that has only
    /// sound, which plays.
    /// The speed step stays.
    bool setFile(const QString &path);
    void play();
    void pause();
    /// Shows the start of the film. Playing flag and speed step stay.
    void stop();
    /// One step down and up in -2, 1, 2, 4, 8, 16, 32, 100 times the normal speed.
    void backward();
    void forward();
    void speedChanged();

    /// Whether the film moves, at any speed or direction: not while it is paused, stopped, at its
    /// end or back at its start after it was wound beyond one of them.
    [[nodiscard]] bool moving() const;

    /// Percent of the duration, 0 to 100; 0 while the duration is unknown.
    int currentPosition();

    /// The window leaves and re-enters the mode of this source.
    void pauseCapture();
    void resumeCapture();

    /// Detaches the film.
    void releaseObjects();

public slots:
    /// `position` is 0 to 100 percent of the duration; the place is rounded down to whole seconds.
    void setPosition(int position);
    /// `volume` is 0 to 100; nothing happens before a file is set.
    void setVolume(int volume);
    void tickEvent();

signals:
    /// The position may have changed.
    void tick();
    /// Nothing is shown but black, as the film cannot be shown; `faulty` follows and says why.
    void emptied();
    /// Why the film is not shown, or not as it should be. A film that cannot be shown at all has
    /// been paused before.
    void faulty(FilmFault fault);

private slots:
    // Posted by the player's thread.
    void filmOpened(quint64 film);
    void filmEnded(quint64 film);
    void filmFaulty(quint64 film, int fault);

private:
    void clearFlags();
    /// Pictures come again after the film had ended: the callback's own refresh is not needed.
    void leaveEnd();
    FilmPlayer::Events filmEvents();
    void seekTo(double seconds);
    void parkAtStart();

    ICaptureCB *m_callback;
    QTimer *m_tickTimer;
    std::unique_ptr<QElapsedTimer> m_stepClock;
    /// The speed index and the place of winding.
    FilmStepper m_stepper;
    /// Percentage asked for before the length was known; -1 for none.
    int m_pendingPercent = -1;
    /// The callback refreshes itself because the film has ended.
    bool m_refreshingAtEnd = false;
    std::unique_ptr<FilmSourcePrivate> m_private;
};
