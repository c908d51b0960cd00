// A whole film through the player, the media library's demuxers and decoders behind it: it is
// opened, shown, sought in and closed again. Whatever the file says, the player answers, and each
// picture that it shows lies within its memory.

#include "sources/film/FilmPlayer.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <numeric>
#include <optional>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

/// The player promises an answer within ten seconds, of a machine with nothing else to do.
constexpr std::chrono::seconds ANSWER_TIMEOUT(40);

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// What the player tells of one film, from its own thread.
class Answers
{
public:
    [[nodiscard]] FilmPlayer::Events events()
    {
        FilmPlayer::Events events;
        events.durationKnown = [this](quint64, double seconds) {
            require(std::isfinite(seconds) && seconds >= 0);
            change([&] { m_seconds = seconds; });
        };
        events.ended = [this](quint64) { change([&] { m_ended = true; }); };
        events.faulty = [](quint64, FilmFault) {};
        return events;
    }

    [[nodiscard]] FilmPlayer::Completion sought()
    {
        return [this](bool) { change([&] { ++m_sought; }); };
    }

    /// The length, or nothing for what is no film.
    [[nodiscard]] std::optional<double> awaitOpening()
    {
        await([this] { return m_seconds || m_ended; });
        const std::lock_guard lock(m_mutex);
        return m_seconds;
    }

    void awaitSeek(int number)
    {
        await([this, number] { return m_sought == number; });
    }

private:
    template <class Change>
    void change(Change doIt)
    {
        const std::lock_guard lock(m_mutex);
        doIt();
        m_changed.notify_all();
    }

    template <class Holds>
    void await(Holds holds)
    {
        std::unique_lock lock(m_mutex);
        require(m_changed.wait_for(lock, ANSWER_TIMEOUT, holds));
    }

    /// Guards all below.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<double> m_seconds;
    bool m_ended = false;
    int m_sought = 0;
};

/// Reads every byte of a picture.
void look(const QImage &picture)
{
    require(picture.format() == QImage::Format_RGB888 && !picture.isNull());
    std::uint64_t sum = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const uchar *row = picture.constScanLine(y);
        sum = std::accumulate(row, row + std::ptrdiff_t{3} * picture.width(), sum);
    }
    // Nothing else keeps the compiler from leaving the reading out.
    require(sum <= std::uint64_t{255} * 3 * static_cast<std::uint64_t>(picture.width()) *
                       static_cast<std::uint64_t>(picture.height()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    static const std::unique_ptr<FilmPlayer> player = FilmPlayer::create();
    const QString path = folder.filePath("film");
    QFile file(path);
    const auto *bytes = reinterpret_cast<const char *>(data);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes, qint64(size)) != qint64(size))
        return 0;
    file.close();

    Answers answers;
    player->open(path, answers.events());
    if (const std::optional<double> seconds = answers.awaitOpening()) {
        player->showNewPicture(look);
        int number = 0;
        for (const double place : {*seconds / 2, *seconds, 0.0}) {
            player->seek(place, answers.sought());
            answers.awaitSeek(++number);
            player->showNewPicture(look);
        }
        require(player->currentTime() >= 0);
    }
    // The next film's events wait behind what is left of this one's.
    Answers last;
    player->open(folder.filePath("none"), last.events());
    static_cast<void>(last.awaitOpening());
    return 0;
}
