#pragma once

#include "sources/film/FilmIndex.h"
#include "sources/film/FilmPipelineGst.h"
#include "sources/film/FrameQueueGst.h"
#include "sources/film/LoopTimerGst.h"
#include "sources/film/PlaybackRequests.h"
#include "sources/threads/CallWatch.h"
#include "sources/threads/CallbackGate.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// Brings one pipeline after another in line with the newest requests, and tells of it. Belongs to
/// the thread that runs `context`, except for currentTime().
class PlaybackEngineGst
{
public:
    /// What it works for and with. All outlive it.
    struct Surroundings {
        PlaybackRequests &requests;
        FrameQueueGst &pictures;
        CallbackGate &gate;
        /// Covers every call into the media library.
        CallWatch &watch;
        /// Whether sound may be asked for; asked for each film.
        std::function<bool()> soundAnswers;
    };

    PlaybackEngineGst(Surroundings around, GMainContext *context);
    ~PlaybackEngineGst();
    PlaybackEngineGst(const PlaybackEngineGst &) = delete;
    PlaybackEngineGst &operator=(const PlaybackEngineGst &) = delete;

    /// To be called after each request and each message.
    void carryOutRequests();
    /// Closes the film; every seek completes.
    void finish();

    /// As FilmPlayer tells it. Any thread.
    [[nodiscard]] double currentTime() const;
    /// Whether the present film plays without sound. Any thread.
    [[nodiscard]] bool silent() const { return m_silent; }
    /// Whether it has asked the disk for the film, and has no answer yet. Any thread.
    [[nodiscard]] bool asksDisk() const { return m_asksDisk; }
    /// The number of the film that it works on. Any thread.
    [[nodiscard]] quint64 film() const { return m_filmNumber; }

private:
    /// What the pipeline is busy with; nothing else is asked of it until it has answered.
    enum class Work { None, Opening, Seeking, ChangingState };
    using Result = FilmPipelineGst::Result;

    void takeFilm(PlaybackRequests::Film film);
    void openPipeline(double at);
    void closePipeline();
    void show(GstElement *pipeline);
    void startSeek(PlaybackRequests::Seek seek);
    void follow(Result seek);
    void finishSeek(bool reached);
    void setPlaying(bool playing);
    void begin(Work work, std::chrono::milliseconds within);
    void endWork();
    void workDone();
    void opened();
    /// No more pictures.
    void end();
    /// The pipeline cannot go on. Of a film that has been shown it is told that it breaks off.
    void breakOff(FilmFault fault);
    void tellEnd();
    void tell(FilmFault fault);
    void complete(const std::deque<PlaybackRequests::Seek> &seeks, bool reached);
    void handle(GstMessage *message);
    void handleError(GstMessage *message);
    void reportDuration();
    void checkPlaying();
    void wake();
    void checkWork();
    [[nodiscard]] bool standsStill();

    const Surroundings m_around;
    PlaybackRequests &m_requests;
    FrameQueueGst &m_pictures;
    GMainContext *const m_context;
    const std::function<void(GstMessage *)> m_onMessage;

    /// Guards m_shown.
    mutable std::mutex m_mutex;
    /// The pipeline, for queries of its position.
    GstPtr<GstElement> m_shown;

    std::unique_ptr<FilmPipelineGst> m_pipeline;
    PlaybackRequests::Film m_film;
    Work m_work = Work::None;
    /// Checks the work while there is any.
    LoopTimerGst m_workTimer;
    /// Asks, while a film plays, for its length, which some formats only reveal as they are read,
    /// and for the sound that did not answer.
    LoopTimerGst m_playTimer;
    std::chrono::steady_clock::time_point m_workEnds;
    bool m_stoodStill = false;
    std::optional<PlaybackRequests::Seek> m_seek;
    /// Where a pipeline that replaces another goes on.
    double m_resumeAt = 0;
    double m_duration = 0;
    /// None until the film's file was looked through.
    std::optional<FilmIndex> m_index;
    std::atomic<bool> m_silent{false};
    /// It is silent until the sound answers.
    bool m_awaitsSound = false;
    std::atomic<bool> m_asksDisk{false};
    std::atomic<quint64> m_filmNumber{0};
    /// In the media library's words; empty while none is missing.
    QString m_missingDecoder;
    bool m_wasOpen = false;
    bool m_playing = false;
    bool m_atEnd = false;
    float m_volume = 1;
};
