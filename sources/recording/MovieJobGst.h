#pragma once

#include "sources/recording/FileTurn.h"
#include "sources/recording/MovieDiskFile.h"
#include "sources/recording/MovieEncodingGst.h"
#include "sources/recording/MovieFeedGst.h"
#include "sources/recording/MovieWriter.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

/// One movie from the opening of its file to the closing, on a thread of its own. Shared by the
/// writer and that thread, which the writer leaves behind when disk or encoder do not answer.
class MovieJobGst
{
public:
    MovieJobGst(MovieWriter::Settings settings, MovieWriter::FailureHandler failed);

    /// Opens, records and closes. Thread "MovieFile".
    void run();

    /// The streams end; without a picture there is nothing to end and the file goes away. Any
    /// thread.
    void end();

    bool waitUntilClosed(std::chrono::milliseconds timeout);

    /// Tells of a failure once; nothing is recorded any more. Any thread.
    void fail(const QString &sentence);
    /// The same for a movie that cannot be written.
    void failToWrite();

    /// Any thread.
    std::atomic<MovieWriter::Status> status{MovieWriter::Status::Waiting};
    MovieFeed feed;
    /// See MovieProgress. Any thread.
    std::atomic<qint64> bytes{0};
    std::atomic<qint64> freeBytes{-1};
    /// How long the movie is, as the writer says, and how long it was when `bytes` were taken of
    /// the encoders: a disk that stalls holds up the one and not the other.
    std::atomic<qint64> lengthUs{0};
    std::atomic<qint64> bytesLengthUs{0};

private:
    [[nodiscard]] bool open();
    [[nodiscard]] bool startEncoders();
    void record();
    [[nodiscard]] bool save();
    void close();
    void checkFolder();
    void checkRoom();
    void failForRoom();
    void wake();

    const MovieWriter::Settings m_settings;
    MovieDiskFile m_disk;
    QuickTimeFile m_file{m_disk};
    /// Taken where recordings are begun, so that they are written in that order.
    std::unique_ptr<FileTurn> m_turn;
    MovieEncoding m_encoding;
    std::atomic<bool> m_abandoned{false};

    /// Guards m_failed.
    std::mutex m_handlerMutex;
    MovieWriter::FailureHandler m_failed;

    /// Guards m_woken and m_closed.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_woken = false;
    bool m_closed = false;
};
