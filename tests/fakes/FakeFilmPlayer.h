#pragma once

#include "sources/film/DisplayLink.h"
#include "sources/film/FilmPlayer.h"

#include <QColor>
#include <QImage>
#include <QStringList>
#include <QVector>

#include <algorithm>
#include <deque>
#include <utility>

/// What a FakeFilmPlayer was told and what it answers; the test keeps it, on one thread.
struct FakeFilm {
    void opened(double seconds)
    {
        length = seconds;
        events.durationKnown(number, seconds);
    }
    void ends()
    {
        atEnd = true;
        events.ended(number);
    }
    void fails(FilmFault fault)
    {
        events.faulty(number, fault);
        ends();
    }

    /// Completes the oldest seek that waits.
    void complete(bool reached = true)
    {
        const FilmPlayer::Completion completion = std::move(waiting.front());
        waiting.pop_front();
        picturesDue += reached ? 1 : 0;
        completion(reached);
    }

    QStringList takeCalls() { return std::exchange(calls, {}); }

    QStringList calls;
    /// Counts the films.
    quint64 number = 0;
    QString path;
    FilmPlayer::Events events;
    bool playing = false;
    bool atEnd = false;
    double time = 0;
    double length = 0;
    float volume = 1;
    QVector<double> seeks;
    /// Seeks complete when the test says so, not at once.
    bool holdSeeks = false;
    std::deque<FilmPlayer::Completion> waiting;
    int picturesDue = 0;
    /// Told when the player is destroyed.
    bool gone = false;
};

class FakeFilmPlayer : public FilmPlayer
{
public:
    explicit FakeFilmPlayer(FakeFilm &film)
        : m_film(film)
    {
    }

    ~FakeFilmPlayer() override
    {
        m_film.gone = true;
        while (!m_film.waiting.empty())
            m_film.complete(false);
    }

    void prepare() override { m_film.calls.append("prepare"); }

    quint64 open(const QString &path, Events events) override
    {
        m_film.calls.append("open");
        m_film.path = path;
        m_film.events = std::move(events);
        m_film.playing = false;
        m_film.atEnd = false;
        m_film.time = 0;
        m_film.length = 0;
        return ++m_film.number;
    }

    void close() override
    {
        m_film.calls.append("close");
        m_film.playing = false;
        m_film.time = 0;
    }

    void play() override
    {
        m_film.calls.append("play");
        m_film.playing = true;
        m_film.atEnd = false;
    }

    void pause() override
    {
        m_film.calls.append("pause");
        m_film.playing = false;
    }

    void seek(double seconds, Completion completion) override
    {
        m_film.calls.append("seek");
        m_film.seeks.append(seconds);
        m_film.atEnd = false;
        m_film.time = std::max(0.0, seconds);
        if (m_film.length > 0)
            m_film.time = std::min(m_film.time, m_film.length);
        m_film.waiting.push_back(std::move(completion));
        if (!m_film.holdSeeks)
            m_film.complete();
    }

    double currentTime() const override { return m_film.time; }
    bool atEnd() const override { return m_film.atEnd; }

    void setVolume(float volume) override
    {
        m_film.calls.append("volume");
        m_film.volume = volume;
    }

    bool showNewPicture(const std::function<void(const QImage &)> &show) override
    {
        if (m_film.picturesDue == 0)
            return false;
        --m_film.picturesDue;
        QImage picture(4, 4, QImage::Format_RGB888);
        picture.fill(Qt::green);
        show(picture);
        return true;
    }

private:
    FakeFilm &m_film;
};

/// What a FakeDisplayLink was told; tick() stands for a refresh of the screen.
struct FakeRefresh {
    bool running = false;
    std::function<void()> tick;
};

class FakeDisplayLink : public DisplayLink
{
public:
    FakeDisplayLink(FakeRefresh &refresh, std::function<void()> tick)
        : m_refresh(refresh)
    {
        m_refresh.tick = std::move(tick);
    }
    ~FakeDisplayLink() override { m_refresh.running = false; }

    void start() override { m_refresh.running = true; }
    void stop() override { m_refresh.running = false; }

private:
    FakeRefresh &m_refresh;
};
