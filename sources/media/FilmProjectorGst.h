#pragma once

#include "sources/media/DuePictures.h"
#include "sources/media/FilmPipelineGst.h"
#include "sources/media/FilmWishes.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// Brings one pipeline after another in line with the newest wishes, and tells of it. Belongs to
/// the thread that runs `context`, except for currentTime().
class FilmProjectorGst
{
public:
    FilmProjectorGst(FilmWishes &wishes, DuePictures &pictures, GMainContext *context);
    ~FilmProjectorGst();
    FilmProjectorGst(const FilmProjectorGst &) = delete;
    FilmProjectorGst &operator=(const FilmProjectorGst &) = delete;

    /// To be called after each wish and each message.
    void meetWishes();
    /// Closes the film; every seek completes.
    void finish();

    /// As FilmPlayer tells it. Any thread.
    [[nodiscard]] double currentTime() const;

private:
    /// What the pipeline is busy with; nothing else is asked of it until it has answered.
    enum class Work { None, Opening, Seeking, ChangingState };

    void takeFilm(FilmWishes::Film film);
    void openPipeline(double at);
    void closePipeline();
    void show(GstElement *pipeline);
    void startSeek(FilmWishes::Seek seek);
    void sendSeek(double seconds, bool exact);
    void finishSeek(bool reached);
    void setPlaying(bool playing);
    void begin(Work work, guint withinMs);
    void endWork();
    void workDone();
    /// No more pictures; broken: the pipeline cannot go on.
    void end(bool broken);
    void handle(GstMessage *message);
    void handleError(GstMessage *message);
    void reportDuration();
    void wake();
    static gboolean onImpatience(gpointer projector);

    FilmWishes &m_wishes;
    DuePictures &m_pictures;
    GMainContext *const m_context;
    const std::function<void(GstMessage *)> m_onMessage;

    /// Guards m_shown.
    mutable std::mutex m_mutex;
    /// The pipeline, for queries of its position.
    GstPtr<GstElement> m_shown;

    std::unique_ptr<FilmPipelineGst> m_pipeline;
    FilmWishes::Film m_film;
    Work m_work = Work::None;
    GstPtr<GSource> m_impatience;
    std::optional<FilmWishes::Seek> m_seek;
    bool m_seekExact = true;
    /// Where a pipeline that replaces another goes on.
    double m_resumeAt = 0;
    double m_duration = 0;
    bool m_silent = false;
    bool m_wasOpen = false;
    bool m_playing = false;
    bool m_atEnd = false;
    float m_volume = 1;
};
