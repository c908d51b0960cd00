#pragma once

#include "sources/FilmSource.h"
#include "tests/fakes/FakeFilmPlayer.h"
#include "tests/fakes/RecordingSink.h"

#include <QCoreApplication>
#include <QStringList>
#include <QThread>
#include <QTimer>

#include <functional>
#include <memory>

/// A film source over fakes, with or without a film of a minute and a second in it.
struct FilmRig {
    explicit FilmRig(double opened = -1)
        : source(&sink, nullptr, std::make_unique<FakeFilmPlayer>(film),
                 [this](std::function<void()> tick) {
                     return std::make_unique<FakeDisplayLink>(refresh, std::move(tick));
                 })
    {
        if (opened < 0)
            return;
        source.setFile("/films/a.mp4");
        film.opened(opened);
        forget();
    }

    void forget()
    {
        QCoreApplication::processEvents();
        film.takeCalls();
        film.seeks.clear();
        sink.takeRefreshes();
    }

    [[nodiscard]] QTimer *timer() const { return source.findChild<QTimer *>(); }

    /// Lets a tick's time pass without the timer, then ticks.
    void tickAfter100ms()
    {
        QThread::msleep(101);
        source.tickEvent();
    }

    RecordingSink sink;
    FakeFilm film;
    FakeRefresh refresh;
    FilmSource source;
};

/// No call of the player, no refresh of the canvas.
inline const QStringList NOTHING;
