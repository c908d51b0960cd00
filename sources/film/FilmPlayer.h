#pragma once

#include <QString>

#include <functional>
#include <memory>

class QImage;

/// Why a film is not shown, or not as it should be.
enum class FilmFault {
    /// The file cannot be read.
    Unreadable,
    /// Damaged, or something else than a film.
    NoFilm,
    /// There is sound alone, which plays.
    NoPicture,
    /// This machine cannot decode it.
    DecoderMissing,
    /// The disk, or whatever else is asked, gives no answer; the film is given up.
    NotAnswering,
    /// The film plays without its sound.
    SoundNotAnswering,
    /// It was shown, and cannot be read or decoded any further: its stick was pulled, for example.
    BrokenOff
};

/// Plays one film at a time: pictures are asked for, sound goes to the desktop by itself.
///
/// Every operation may be called from any thread, returns at once and never waits for the file, the
/// decoder or the sound server; the work is done on a thread of the player's own. The newest
/// request counts: operations that arrive while an earlier one is under way replace what it had not
/// begun. Events and completions are called on the player's thread, with no lock of the player
/// held. After open() or close() an event of the film before may still be under way, so each tells
/// the number of its film. The destructor joins the thread, or leaves it behind after a second when
/// a sound server or a disk does not answer; nothing is called afterwards.
class FilmPlayer
{
public:
    /// `film` is the number that open() returned.
    struct Events {
        /// The film is open: its length in seconds, 0 when unknown. Again when it turns out longer
        /// or shorter. Not called for a film that cannot be opened.
        std::function<void(quint64 film, double seconds)> durationKnown;
        /// No more pictures will come: the end was reached while playing, or the film cannot be
        /// opened or read any further. Once for each time that this happens. A play() or seek()
        /// that comes meanwhile may make it untrue: atEnd() tells.
        std::function<void(quint64 film)> ended;
        /// Something that the user should be told: at the latest five seconds after the sound or
        /// the disk was asked for, or ten when it answers but the film still does not show. `ended`
        /// follows when nothing will be shown.
        std::function<void(quint64 film, FilmFault fault)> faulty;
    };

    /// True when the place was reached and its picture waits for showNewPicture(); false when it
    /// was not (superseded by a later seek or film, beyond the readable part, too slow).
    using Completion = std::function<void(bool reached)>;

    virtual ~FilmPlayer() = default;
    FilmPlayer(const FilmPlayer &) = delete;
    FilmPlayer &operator=(const FilmPlayer &) = delete;

    /// Loads what the first open() needs, so that this is not done when the user waits.
    virtual void prepare() = 0;

    /// Replaces the film by the file at `path`, paused at its start; pictures of the one before are
    /// not shown from then on. Returns the film's number, higher than that of each film before and
    /// never 0. A file that cannot be opened reports `ended` and leaves a player that can open the
    /// next one.
    virtual quint64 open(const QString &path, Events events) = 0;
    /// Gives up the film: file and sound device are closed and currentTime() is 0.
    virtual void close() = 0;

    /// Playing at the end of the film begins again at its start.
    virtual void play() = 0;
    /// Uses no processor time from then on.
    virtual void pause() = 0;

    /// Goes to a place, in seconds from the start of the film, limited to its length. Playing goes
    /// on from there. Every seek completes exactly once, in the order of the calls.
    virtual void seek(double seconds, Completion completion) = 0;

    /// Seconds from the start of the film; the target while a seek is under way, the length at the
    /// end, 0 without a film.
    [[nodiscard]] virtual double currentTime() const = 0;
    /// Whether nothing has been opened, played or sought since the last `ended`.
    [[nodiscard]] virtual bool atEnd() const = 0;

    /// 0.0 silent to 1.0 unchanged; kept for the films to come.
    virtual void setVolume(float volume) = 0;

    /// Calls `show` with the picture that is due now, if it has not been shown yet, as
    /// QImage::Format_RGB888, each row padded to 4 bytes. The picture wraps memory of the decoder
    /// or of the player and is valid during the call only. Returns whether there was one. Does not
    /// wait.
    virtual bool showNewPicture(const std::function<void(const QImage &picture)> &show) = 0;

    /// The player of this platform.
    [[nodiscard]] static std::unique_ptr<FilmPlayer> create();

protected:
    FilmPlayer() = default;
};
