#pragma once

#include "sources/FilmSource.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QTemporaryDir>

#include <memory>

/// Plays films in the real player, and looks whether it still plays the next one.
class PlayedFilmTest : public QObject
{
    Q_OBJECT

protected:
    QTemporaryDir m_folder;
    QString m_film;
    /// A third of a second long.
    QString m_nextFilm;
    RecordingSink m_sink;
    std::unique_ptr<FilmSource> m_source;

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    /// The player must still open and play the next film to its end.
    void verifyTheNextFilmPlays()
    {
        m_source->setFile(m_nextFilm);
        m_sink.forget();
        m_sink.takeRefreshes();
        QTRY_COMPARE_WITH_TIMEOUT(m_sink.lastNumber(), 9, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(m_sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(m_source->currentPosition(), 100);
    }

private slots:
    void initTestCase()
    {
        m_film = path("film.mp4");
        TestFilm made;
        made.seconds = 1;
        QVERIFY(made.write(m_film));
        made.seconds = 1.0 / 3;
        m_nextFilm = path("next.mp4");
        QVERIFY(made.write(m_nextFilm));
        m_sink.readNumber = TestFilm::numberIn;
    }

    void init()
    {
        m_source = std::make_unique<FilmSource>(&m_sink, nullptr);
        m_sink.forget();
        m_sink.takeRefreshes();
    }

    void cleanup() { m_source.reset(); }
};
