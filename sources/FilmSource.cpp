#include "sources/FilmSource.h"

#include "sources/FilmSourcePrivate.h"
#include "sources/ICaptureCB.h"

#include <QElapsedTimer>
#include <QTimer>

#include <limits>
#include <mutex>
#include <utility>

namespace
{

constexpr int TICK_MS = 100;

} // namespace

FilmSource::FilmSource(ICaptureCB *callback, QObject *parent)
    : FilmSource(callback, parent, FilmPlayer::create(), DisplayLink::create)
{
}

FilmSource::FilmSource(ICaptureCB *callback, QObject *parent, std::unique_ptr<FilmPlayer> player,
                       const MakeDisplayLink &makeDisplayLink)
    : QObject(parent)
    , m_callback(callback)
    , m_tickTimer(new QTimer(this))
    , m_stepClock(std::make_unique<QElapsedTimer>())
    , m_private(std::make_unique<FilmSourcePrivate>(callback, std::move(player), makeDisplayLink))
{
    m_tickTimer->setInterval(TICK_MS);
    m_tickTimer->setTimerType(Qt::PreciseTimer);
    connect(m_tickTimer, &QTimer::timeout, this, &FilmSource::tickEvent);
    m_stepClock->start();
}

FilmSource::~FilmSource()
{
    if (m_private->loaded)
        clearFlags();
    // Joins both threads; their last calls may still reach this object, so it is whole until then.
    m_private.reset();
}

bool FilmSource::setFile(const QString &path)
{
    if (m_private->loaded)
        clearFlags();
    {
        const std::lock_guard lock(m_private->mutex);
        m_private->duration = 0;
        m_private->opening = true;
        m_private->film = m_private->player->open(path, filmEvents());
    }
    m_private->loaded = true;
    m_private->playing = true;
    m_private->stepping = false;
    m_tickTimer->start();
    m_private->player->play();
    m_private->displayLink->start();
    m_callback->stopAutoRefresh();
    return true;
}

void FilmSource::play()
{
    if (!m_private->loaded)
        return;
    m_refreshingAtEnd = false;
    m_stepper.setNormalSpeed();
    m_private->playing = true;
    m_private->stepping = false;
    m_private->player->play();
    m_private->displayLink->start();
    m_tickTimer->start();
    m_stepClock->restart();
    m_callback->stopAutoRefresh();
}

void FilmSource::pause()
{
    if (!m_private->loaded)
        return;
    m_private->player->pause();
    m_private->displayLink->stop();
    m_private->playing = false;
    m_private->stepping = false;
    m_tickTimer->stop();
    m_callback->startAutoRefresh();
}

void FilmSource::stop()
{
    if (!m_private->loaded)
        return;
    m_private->displayLink->stop();
    m_private->stepping = true;
    m_stepper.setPosition(0);
    m_private->player->pause();
    seekTo(0);
    emit tick();
    m_tickTimer->stop();
    m_callback->startAutoRefresh();
}

void FilmSource::backward()
{
    if (!m_private->loaded)
        return;
    m_stepper.slower();
    speedChanged();
}

void FilmSource::forward()
{
    if (!m_private->loaded)
        return;
    m_stepper.faster();
    speedChanged();
}

void FilmSource::speedChanged()
{
    if (!m_private->loaded)
        return;
    if (!m_stepper.atNormalSpeed()) {
        m_private->displayLink->stop();
        m_private->stepping = true;
        m_stepper.setPosition(m_private->player->currentTime());
        m_private->player->pause();
        m_stepClock->restart();
    } else if (m_private->playing) {
        leaveEnd();
        m_private->displayLink->start();
        m_private->stepping = false;
        m_private->player->play();
    }
}

bool FilmSource::moving() const
{
    if (!m_private->loaded || !m_private->playing)
        return false;
    if (m_private->stepping)
        return m_tickTimer->isActive() && !m_stepper.atNormalSpeed();
    // The player is at the end a moment before it says so.
    const double duration = m_private->duration;
    const bool atEnd = duration > 0 && m_private->player->currentTime() >= duration;
    return !atEnd && !m_refreshingAtEnd;
}

int FilmSource::currentPosition()
{
    if (m_private->stepping)
        return FilmStepper::percent(m_stepper.position(), m_private->duration);
    if (m_pendingPercent >= 0)
        return m_pendingPercent;
    return FilmStepper::percent(m_private->player->currentTime(), m_private->duration);
}

void FilmSource::pauseCapture()
{
    pause();
    m_callback->stopAutoRefresh();
}

void FilmSource::resumeCapture()
{
    m_private->player->prepare();
    m_callback->startAutoRefresh();
}

void FilmSource::releaseObjects()
{
    if (!m_private->loaded)
        return;
    clearFlags();
    m_private->displayLink->stop();
    const std::lock_guard lock(m_private->mutex);
    m_private->film = 0;
    m_private->player->close();
}

void FilmSource::setPosition(int position)
{
    if (!m_private->loaded)
        return;
    if (m_private->opening) {
        m_pendingPercent = position;
        return;
    }
    if (m_private->playing && !m_private->stepping)
        leaveEnd();
    seekTo(FilmStepper::secondsAt(position, m_private->duration));
}

void FilmSource::setVolume(int volume)
{
    if (m_private->loaded)
        m_private->player->setVolume(static_cast<float>(volume / 100.0));
}

void FilmSource::tickEvent()
{
    if (m_private->stepping) {
        double place = m_stepper.position();
        const qint64 elapsedMs = m_stepClock->elapsed();
        if (!m_stepper.atNormalSpeed() && m_private->playing && elapsedMs >= TICK_MS) {
            place = m_stepper.advance(elapsedMs);
            m_stepClock->restart();
            seekTo(m_stepper.position());
        }
        // The end of a film that is still being opened is not known yet.
        const double duration = m_private->opening ? std::numeric_limits<double>::infinity()
                                                   : m_private->duration.load();
        const bool parked = !m_private->playing && m_stepper.position() == 0;
        if (FilmStepper::beyondEnds(place, duration) && !parked)
            parkAtStart();
    }
    emit tick();
}

void FilmSource::filmOpened(quint64 film)
{
    if (m_private->loaded && film == m_private->film && m_pendingPercent >= 0)
        setPosition(m_pendingPercent);
}

void FilmSource::filmEnded(quint64 film)
{
    if (!m_private->loaded || film != m_private->film)
        return;
    m_private->opening = false;
    m_pendingPercent = -1;
    // Whatever pauses a film has seen to the refresh itself, and may have left the mode since. What
    // was played or sought since shows pictures again.
    if (!m_private->player->atEnd() || !m_private->playing)
        return;
    m_refreshingAtEnd = true;
    m_callback->startAutoRefresh();
}

void FilmSource::filmFaulty(quint64 film, int fault)
{
    if (!m_private->loaded || film != m_private->film)
        return;
    const auto told = static_cast<FilmFault>(fault);
    const bool shows = told == FilmFault::SoundNotAnswering || told == FilmFault::BrokenOff;
    const bool plays = shows || told == FilmFault::NoPicture;
    if (!plays) {
        m_pendingPercent = -1;
        if (m_private->playing)
            pause();
    }
    if (!shows)
        m_private->showNothing();
    if (!plays)
        emit emptied();
    emit faulty(told);
}

FilmPlayer::Events FilmSource::filmEvents()
{
    // Called on the player's thread, at the latest while the destructor joins it.
    FilmSourcePrivate *shared = m_private.get();
    FilmPlayer::Events events;
    events.durationKnown = [this, shared](quint64 film, double seconds) {
        {
            const std::lock_guard lock(shared->mutex);
            if (film != shared->film)
                return;
            shared->duration = seconds;
            shared->opening = false;
        }
        // The first picture shows even if the film has been paused meanwhile.
        shared->displayPicture(film);
        QMetaObject::invokeMethod(this, "filmOpened", Qt::QueuedConnection, Q_ARG(quint64, film));
    };
    events.ended = [this, shared](quint64 film) {
        // The screen may not have asked for the last pictures yet, and whoever hears of the end may
        // stop it from asking.
        shared->displayPicturesLeft(film);
        QMetaObject::invokeMethod(this, "filmEnded", Qt::QueuedConnection, Q_ARG(quint64, film));
    };
    events.faulty = [this](quint64 film, FilmFault fault) {
        QMetaObject::invokeMethod(this, "filmFaulty", Qt::QueuedConnection, Q_ARG(quint64, film),
                                  Q_ARG(int, static_cast<int>(fault)));
    };
    return events;
}

void FilmSource::clearFlags()
{
    m_private->loaded = false;
    m_private->playing = false;
    m_private->stepping = false;
    m_tickTimer->stop();
    m_pendingPercent = -1;
    m_refreshingAtEnd = false;
}

void FilmSource::leaveEnd()
{
    if (std::exchange(m_refreshingAtEnd, false))
        m_callback->stopAutoRefresh();
}

void FilmSource::seekTo(double seconds)
{
    m_pendingPercent = -1;
    FilmSourcePrivate *target = m_private.get();
    const quint64 film = target->film;
    m_private->player->seek(seconds, [target, film](bool) { target->displayPicture(film); });
}

void FilmSource::parkAtStart()
{
    m_private->playing = false;
    m_stepper.setPosition(0);
    seekTo(0);
    m_callback->startAutoRefresh();
}
