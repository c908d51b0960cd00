#pragma once

#include "sources/recording/SoundCapture.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

/// Hands sound on in real time and fills in silence where none comes.
///
/// Runs the thread "LiveQueue". Without a source, silence follows in real time. A source that is
/// there but stalls is given time to catch up before silence takes the place of its sound.
class SoundPump
{
public:
    ~SoundPump();

    /// The handler runs on "LiveQueue". A piece of silence comes when no source has delivered
    /// within a tenth of a second, more of it as late as for a source that stalls, or at once when
    /// setSource(false) says that there is none.
    void start(SoundCapture::Handler handler);
    /// Returns after the last call of the handler.
    void stop();

    /// Whether a source is there. Any thread.
    void setSource(bool present);
    /// A piece of the source's sound. What silence took the place of is dropped; otherwise every
    /// sample is handed on, also of pieces that arrive together and are stamped so. Any thread.
    void push(std::vector<std::int16_t> samples, qint64 presentationUs);

private:
    struct Piece {
        std::vector<std::int16_t> samples;
        qint64 presentationUs;
    };

    void run();
    qint64 silenceDueUs() const;
    void deliver(Piece piece, std::unique_lock<std::mutex> &lock);

    SoundCapture::Handler m_handler;
    std::thread m_thread;

    /// Guards all members below.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Piece> m_pieces;
    bool m_stopping = false;
    bool m_sourceAbsent = false;
    /// When start() was called, and where the sound and the silence handed on so far end; -1
    /// before the first.
    qint64 m_startUs = 0;
    qint64 m_endUs = -1;
    qint64 m_silenceEndUs = -1;
};
