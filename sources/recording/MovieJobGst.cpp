#include "sources/recording/MovieJobGst.h"

#include "diagnostics/TerminalLines.h"
#include "sources/gst/GstRuntime.h"
#include "sources/recording/MovieEncoders.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <pthread.h>

namespace
{

/// How much may be missing in the file, and so lost in a power cut: with what the encoder and the
/// disk need on top, a second at most.
constexpr std::chrono::milliseconds SAVE_INTERVAL(500);

QString text(const char *sentence)
{
    return QCoreApplication::translate("MovieWriter", sentence);
}

} // namespace

MovieJobGst::MovieJobGst(MovieWriter::Settings settings, MovieWriter::FailureHandler failed)
    : feed(settings.pictureSize)
    , m_settings(std::move(settings))
    , m_disk(QFile::encodeName(m_settings.fileName))
    , m_turn(std::make_unique<FileTurn>(m_settings.fileName))
    , m_failed(std::move(failed))
{
}

void MovieJobGst::run()
{
    pthread_setname_np(pthread_self(), "MovieFile");
    if (open())
        record();
    close();
    m_turn.reset();
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_changed.notify_all();
}

void MovieJobGst::end()
{
    if (!feed.hasPictures())
        m_abandoned = true;
    feed.end();
    wake();
}

bool MovieJobGst::waitUntilClosed(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [this] { return m_closed; });
}

void MovieJobGst::fail(const QString &sentence)
{
    const std::lock_guard lock(m_handlerMutex);
    if (status.exchange(MovieWriter::Status::Failed) != MovieWriter::Status::Failed && m_failed)
        m_failed(sentence);
}

void MovieJobGst::failToWrite()
{
    const int error = m_disk.error();
    if (error == ENOSPC || error == EDQUOT)
        failForRoom();
    else
        fail(text(QT_TRANSLATE_NOOP(
            "MovieWriter", "The recording was stopped because the movie file cannot be written.")));
}

void MovieJobGst::failForRoom()
{
    fail(text(
        QT_TRANSLATE_NOOP("MovieWriter", "The recording was stopped because the disk is full.")));
}

/// The encoders come first: what they deliver waits for a folder that stalls, and for an earlier
/// movie of that name.
bool MovieJobGst::open()
{
    if (!startEncoders())
        return false;
    m_turn->wait();
    if (m_abandoned)
        return false;
    if (!m_disk.open()) {
        fail(text(QT_TRANSLATE_NOOP("MovieWriter", "The movie file cannot be created.")));
        return false;
    }
    checkRoom();
    return status != MovieWriter::Status::Failed;
}

bool MovieJobGst::startEncoders()
{
    GstRuntime::initialise();
    const QString encoder = MovieEncoders::firstWorking(
        m_settings.encoders.isEmpty() ? MovieEncoders::names() : m_settings.encoders,
        m_settings.pictureSize, m_settings.quality);
    if (encoder.isEmpty()) {
        TerminalLines::tell(TerminalLines::Line::NoMovieEncoder);
        fail(text(QT_TRANSLATE_NOOP("MovieWriter", "This computer has no encoder for movies.")));
        return false;
    }
    if (m_abandoned)
        return false;
    const QString soundEncoder =
        m_settings.withSound ? MovieEncoders::soundDescription(m_settings.quality) : QString();
    if (!m_encoding.start(encoder, soundEncoder, [this] { wake(); })) {
        fail(text(QT_TRANSLATE_NOOP("MovieWriter", "A component for writing movies is missing.")));
        return false;
    }
    feed.connect(m_encoding.pictures(), m_encoding.sound());
    return true;
}

void MovieJobGst::record()
{
    auto due = std::chrono::steady_clock::now() + SAVE_INTERVAL;
    MovieEncoding::State state = MovieEncoding::State::Running;
    while (state == MovieEncoding::State::Running && !m_abandoned) {
        {
            std::unique_lock lock(m_mutex);
            m_changed.wait_until(lock, due, [this] { return m_woken; });
            m_woken = false;
        }
        // The state is read before the output, so that at the end nothing is left behind.
        state = m_encoding.state();
        if (state == MovieEncoding::State::Running && std::chrono::steady_clock::now() < due)
            continue;
        due = std::chrono::steady_clock::now() + SAVE_INTERVAL;
        if (!save())
            return;
        checkFolder();
        checkRoom();
    }
    if (state == MovieEncoding::State::Failed)
        failToWrite();
}

/// Makes what the encoders have delivered part of the movie.
bool MovieJobGst::save()
{
    // Sound alone is no movie and is not to make the file.
    if (!feed.hasPictures())
        return true;
    const qint64 takenAtUs = lengthUs;
    const QVector<QuickTimeFile::Chunk> chunks = m_encoding.take(m_file);
    if (!chunks.isEmpty() && !m_file.append(chunks)) {
        checkFolder(); // the better reason, if it is one
        failToWrite();
        return false;
    }
    for (const QuickTimeFile::Chunk &chunk : chunks)
        bytes += chunk.bytes.size();
    bytesLengthUs = takenAtUs;
    return true;
}

void MovieJobGst::close()
{
    feed.end();
    m_encoding.stop();
    feed.disconnect();
    if (m_file.isMovie()) {
        m_file.finish();
        bytes = m_disk.size();
    } else {
        m_disk.remove();
    }
    m_disk.close();
}

void MovieJobGst::checkFolder()
{
    if (m_disk.inPlace())
        return;
    fail(text(QT_TRANSLATE_NOOP("MovieWriter",
                                "The recording was stopped because its folder no longer exists.")));
    feed.end();
}

/// A movie that is ended while there is room left is whole, and so is what else uses the disk. One
/// that was stopped needs no more room than for what has been taken.
void MovieJobGst::checkRoom()
{
    freeBytes = m_disk.freeBytes();
    const bool isStopped = status == MovieWriter::Status::Finished;
    if (isStopped || freeBytes < 0 || freeBytes >= m_settings.leastFreeBytes)
        return;
    failForRoom();
    feed.end();
}

void MovieJobGst::wake()
{
    const std::lock_guard lock(m_mutex);
    m_woken = true;
    m_changed.notify_all();
}
