#pragma once

#include "sources/film/FrameQueueGst.h"
#include "sources/film/PlaybackEngineGst.h"
#include "sources/film/PlaybackRequests.h"
#include "sources/threads/CallWatch.h"
#include "sources/threads/CallbackGate.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

/// What a film player shares with the engines that work for it, of which one may outlive it.
struct FilmPlayerState {
    PlaybackRequests requests;
    FrameQueueGst pictures;
    /// Everything that an engine tells the player's owner goes through it.
    CallbackGate gate;
};

/// Carries out the requests of a player on a thread of its own, "FilmPlayer". It sleeps until a
/// request or a message of the pipeline arrives. The thread keeps the engine alive: when a call
/// into the media library does not return, the engine is left to itself. All operations: any
/// thread.
class PlaybackThreadGst
{
public:
    /// `hanging` is an engine that the sound holds up, or null: until it has ended, films play
    /// without sound and no sound device is touched.
    [[nodiscard]] static std::shared_ptr<PlaybackThreadGst>
    start(std::shared_ptr<FilmPlayerState> state, std::shared_ptr<PlaybackThreadGst> hanging);

    void wake();
    [[nodiscard]] double currentTime() const { return m_engine.currentTime(); }
    /// Whether the present film has no sound.
    [[nodiscard]] bool silent() const { return m_engine.silent(); }
    /// Whether it has asked the disk for the film, and has no answer yet.
    [[nodiscard]] bool asksDisk() const { return m_engine.asksDisk(); }
    /// The number of the film that it works on.
    [[nodiscard]] quint64 film() const { return m_engine.film(); }
    [[nodiscard]] std::shared_ptr<PlaybackThreadGst> hangingOnSound() const { return m_hanging; }

    /// True when the engine hangs, false after finish() or leave().
    [[nodiscard]] bool waitForHang(std::chrono::milliseconds bound);
    /// A call that is under way counts as hanging after that time, if it has not before.
    void hurry(std::chrono::milliseconds bound) { m_watch.hurry(bound); }
    /// Ends the engine of a player that goes. What takes longer than `bound` goes on alone.
    void finish(std::chrono::milliseconds bound);
    /// Leaves an engine that hangs to itself; it carries out no request any more.
    void leave();
    [[nodiscard]] bool ended() const;

private:
    PlaybackThreadGst(std::shared_ptr<FilmPlayerState> state,
                      std::shared_ptr<PlaybackThreadGst> hanging);
    void run();

    const std::shared_ptr<FilmPlayerState> m_state;
    const std::shared_ptr<PlaybackThreadGst> m_hanging;
    const GstPtr<GMainContext> m_context;
    CallWatch m_watch;
    PlaybackEngineGst m_engine;
    std::atomic<bool> m_left{false};
    std::thread m_thread;

    /// Guards m_ended.
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_ended = false;
};
