#pragma once

#include "sources/recording/MovieWriter.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/Timeout.h"
#include "tests/media/SyntheticPictures.h"

#include <QtTest>

#include <QSize>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

inline constexpr qint64 START_US = 5000000000;
inline constexpr QSize SMALL(640, 360);

inline qint64 timeOf(int number)
{
    return START_US + number * 1000000LL / 30;
}

/// A writer with what it reported.
class WrittenMovie
{
public:
    explicit WrittenMovie(const QString &fileName, QSize size = SMALL,
                          const QStringList &encoders = {"x264enc"},
                          MovieQuality quality = MovieQuality::Standard)
        : m_pictures(size)
        , writer(MovieWriter::create({fileName, size, encoders, quality},
                                     [this](const QString &sentence) {
                                         const std::lock_guard lock(m_mutex);
                                         m_failures << sentence;
                                     }))
    {
        writer->startSession(START_US);
    }

    /// Until its folder is held and its file could be made.
    void waitUntilBegun() const
    {
        QTRY_VERIFY_WITH_TIMEOUT(writer->progress().freeBytes >= 0, TIMEOUT_MS);
    }

    void appendSound(int number)
    {
        const std::vector<std::int16_t> sound(1470, 1000);
        writer->appendSound(sound.data(), 1470, timeOf(number));
    }
    void appendPicture(int number)
    {
        writer->appendPicture(m_pictures.picture(number, number >= 15 && number < 18),
                              timeOf(number));
    }
    /// A thirtieth of a second of both; offers the picture until the encoder has caught up.
    void append(int number)
    {
        appendSound(number);
        qint64 dropped = 0;
        do {
            dropped = writer->droppedPictures();
            appendPicture(number);
            std::this_thread::yield();
        } while (writer->droppedPictures() > dropped);
    }

    /// And waits until the file is complete, which a slow disk may leave to the background.
    void finish()
    {
        writer->finish();
        waitUntilCompleted();
    }
    static void waitUntilCompleted()
    {
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(TIMEOUT_MS)));
    }

    QStringList failures() const
    {
        const std::lock_guard lock(m_mutex);
        return m_failures;
    }

private:
    SyntheticPictures m_pictures;
    mutable std::mutex m_mutex;
    QStringList m_failures;

public:
    std::unique_ptr<MovieWriter> writer;
};
