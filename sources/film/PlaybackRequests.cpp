#include "sources/film/PlaybackRequests.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <utility>

namespace
{

constexpr double SAME_END_SECONDS = 0.5;

} // namespace

quint64 PlaybackRequests::setFilm(const std::optional<QString> &path, FilmPlayer::Events events)
{
    const std::lock_guard lock(m_mutex);
    m_film.openedAs = ++m_film.number;
    m_film.renewals = 0;
    m_film.path = path;
    m_film.events = std::move(events);
    m_film.resumeAt = 0;
    m_motion = {};
    m_playedAtEnd = false;
    m_atEnd = false;
    m_place = 0;
    m_length = 0;
    return m_film.number;
}

void PlaybackRequests::play(double seconds)
{
    const std::lock_guard lock(m_mutex);
    m_motion = {true, true};
    m_playedAtEnd = m_length > 0 && seconds >= m_length;
    m_atEnd = false;
}

void PlaybackRequests::pause()
{
    const std::lock_guard lock(m_mutex);
    m_motion = {};
    m_playedAtEnd = false;
}

void PlaybackRequests::seek(double seconds, FilmPlayer::Completion completion)
{
    const std::lock_guard lock(m_mutex);
    double place = std::isfinite(seconds) ? std::max(0.0, seconds) : 0.0;
    if (m_length > 0)
        place = std::min(place, m_length);
    m_seeks.push_back({m_film.number, place, std::move(completion)});
    m_motion.again = false;
    m_playedAtEnd = false;
    m_atEnd = false;
    m_place = place;
}

void PlaybackRequests::setVolume(float volume)
{
    const std::lock_guard lock(m_mutex);
    m_volume = std::clamp(volume, 0.0F, 1.0F);
}

void PlaybackRequests::finish()
{
    const std::lock_guard lock(m_mutex);
    m_finished = true;
}

std::optional<double> PlaybackRequests::place() const
{
    const std::lock_guard lock(m_mutex);
    m_lastTime = m_place.value_or(m_lastTime);
    return m_place;
}

double PlaybackRequests::answered(double seconds)
{
    const std::lock_guard lock(m_mutex);
    if (seconds >= 0)
        m_lastTime = seconds;
    return m_lastTime;
}

bool PlaybackRequests::atEnd() const
{
    const std::lock_guard lock(m_mutex);
    return m_atEnd;
}

bool PlaybackRequests::finished() const
{
    const std::lock_guard lock(m_mutex);
    return m_finished;
}

PlaybackRequests::Film PlaybackRequests::renew(std::optional<quint64> unreadable)
{
    const std::lock_guard lock(m_mutex);
    const bool givenUp = unreadable == m_film.number;
    ++m_film.number;
    ++m_film.renewals;
    for (Seek &seek : m_seeks) {
        if (seek.film + 1 == m_film.number)
            seek.film = m_film.number;
    }
    if (givenUp)
        m_film.path.reset();
    m_atEnd = givenUp;
    m_film.resumeAt = m_place.value_or(m_lastTime);
    m_place = m_film.resumeAt;
    return m_film;
}

std::optional<PlaybackRequests::Film> PlaybackRequests::otherFilm(quint64 than) const
{
    const std::lock_guard lock(m_mutex);
    if (m_film.number == than)
        return std::nullopt;
    return m_film;
}

float PlaybackRequests::volume() const
{
    const std::lock_guard lock(m_mutex);
    return m_volume;
}

std::deque<PlaybackRequests::Seek> PlaybackRequests::takeSeeks(quint64 film)
{
    const std::lock_guard lock(m_mutex);
    return takeSeeksIf([film](const Seek &seek) { return seek.film == film; });
}

std::deque<PlaybackRequests::Seek> PlaybackRequests::takeSeeksBefore(quint64 film)
{
    const std::lock_guard lock(m_mutex);
    return takeSeeksIf([film](const Seek &seek) { return seek.film < film; });
}

std::deque<PlaybackRequests::Seek>
PlaybackRequests::takeSeeksIf(const std::function<bool(const Seek &)> &wanted)
{
    const auto first = std::stable_partition(m_seeks.begin(), m_seeks.end(), std::not_fn(wanted));
    std::deque<Seek> taken(std::make_move_iterator(first), std::make_move_iterator(m_seeks.end()));
    m_seeks.erase(first, m_seeks.end());
    return taken;
}

std::optional<PlaybackRequests::Motion> PlaybackRequests::takeMotion(quint64 film, bool ended)
{
    const std::lock_guard lock(m_mutex);
    if (m_film.number != film)
        return std::nullopt;
    const Motion motion = m_motion;
    if (ended || !m_playedAtEnd) {
        m_motion.again = false;
        m_playedAtEnd = false;
    }
    return motion;
}

bool PlaybackRequests::ended(quint64 film)
{
    const std::lock_guard lock(m_mutex);
    if (m_film.number != film || !m_seeks.empty() || m_playedAtEnd)
        return false;
    m_motion.again = false;
    m_atEnd = true;
    return true;
}

void PlaybackRequests::setPlace(quint64 film, std::optional<double> seconds)
{
    const std::lock_guard lock(m_mutex);
    if (m_film.number == film && m_seeks.empty())
        m_place = seconds;
}

bool PlaybackRequests::setLength(quint64 film, double seconds)
{
    const std::lock_guard lock(m_mutex);
    if (m_film.number != film)
        return false;
    // What seemed to be the end was none. Sound and pictures seldom end at the same moment.
    if (seconds > m_length + SAME_END_SECONDS)
        m_playedAtEnd = false;
    m_length = seconds;
    return true;
}
