#pragma once

#include "sources/film/FilmPlayer.h"

#include <deque>
#include <mutex>
#include <optional>

/// What the callers of a film player last asked for, and where that leaves the film. The callers'
/// part belongs to any thread, the other to the player's. Nothing is called from here.
class PlaybackRequests
{
public:
    struct Film {
        /// Counts the calls of setFilm() and renew(); 0 before the first.
        quint64 number = 0;
        /// The number that setFilm() returned, by which the callers know the film.
        quint64 openedAs = 0;
        /// Counts the calls of renew() for it.
        int renewals = 0;
        /// None when the film was given up.
        std::optional<QString> path;
        FilmPlayer::Events events;
        /// Seconds; where it goes on when it is opened a second time.
        double resumeAt = 0;
    };

    struct Seek {
        quint64 film = 0;
        double seconds = 0;
        FilmPlayer::Completion completion;
    };

    struct Motion {
        bool playing = false;
        /// play() was called since the last look: a film that has ended begins again. Stays until
        /// the player's end when the film was at its last position already.
        bool again = false;
    };

    // The callers' part.

    /// Returns the film's number.
    quint64 setFilm(const std::optional<QString> &path, FilmPlayer::Events events);
    /// `seconds`: where the film is.
    void play(double seconds);
    void pause();
    /// `seconds` is limited to the film's length, as far as that is known.
    void seek(double seconds, FilmPlayer::Completion completion);
    void setVolume(float volume);
    void finish();

    /// Seconds; none while the pipeline has to be asked.
    [[nodiscard]] std::optional<double> place() const;
    /// What the pipeline answered; below 0 it could not, and its last answer is returned.
    double answered(double seconds);
    /// As FilmPlayer tells it.
    [[nodiscard]] bool atEnd() const;

    // The player's part.

    /// Gives the film another number, but not another `openedAs`, so that an engine that still
    /// works on it is ignored. Its seeks, its motion and its place are kept. If it is the film
    /// `unreadable`, its path is taken from it. Returns the film.
    Film renew(std::optional<quint64> unreadable = {});
    [[nodiscard]] bool finished() const;
    /// The film, if it is another than that number.
    [[nodiscard]] std::optional<Film> otherFilm(quint64 than) const;
    [[nodiscard]] float volume() const;
    /// The seeks in that film, in their order; the caller completes them.
    [[nodiscard]] std::deque<Seek> takeSeeks(quint64 film);
    /// The seeks in all films before.
    [[nodiscard]] std::deque<Seek> takeSeeksBefore(quint64 film);
    /// None when there is another film by now. `ended`: whether that film has ended.
    [[nodiscard]] std::optional<Motion> takeMotion(quint64 film, bool ended);
    /// That film has ended, so that a play() from before its last position does not begin it again.
    /// False when there is another film, a seek or a play() from the last position by now: then the
    /// end means nothing any more.
    [[nodiscard]] bool ended(quint64 film);

    /// Where that film is until it plays on; nothing when the pipeline knows. A newer request has
    /// precedence.
    void setPlace(quint64 film, std::optional<double> seconds);
    /// False when there is another film by now.
    [[nodiscard]] bool setLength(quint64 film, double seconds);

private:
    /// Called with the lock held.
    [[nodiscard]] std::deque<Seek> takeSeeksIf(const std::function<bool(const Seek &)> &wanted);

    /// Guards all the members below.
    mutable std::mutex m_mutex;
    Film m_film;
    Motion m_motion;
    /// play() was called at the film's last position, before the player's end.
    bool m_playedAtEnd = false;
    bool m_atEnd = false;
    float m_volume = 1;
    std::deque<Seek> m_seeks;
    bool m_finished = false;
    std::optional<double> m_place = 0;
    /// The place that was reported last.
    mutable double m_lastTime = 0;
    double m_length = 0;
};
