#pragma once

#include "sources/film/FilmVideoSinkGst.h"
#include "sources/film/FormatRepairGst.h"
#include "sources/film/FrameQueueGst.h"
#include "sources/film/StreamStartGst.h"
#include "sources/gst/GstPointers.h"

#include <QString>

#include <functional>
#include <gst/gst.h>
#include <memory>

/// One film in one GStreamer pipeline: pictures go to a FrameQueueGst, sound to the desktop or,
/// when silent, nowhere. Belongs to the thread of its creation.
class FilmPipelineGst
{
public:
    enum class Result { Failed, Done, Later };

    /// Null when an element is missing. Messages go to `onMessage`, which
    /// outlives the pipeline, on the thread-default context.
    [[nodiscard]] static std::unique_ptr<FilmPipelineGst>
    create(const QString &path, bool silent, quint64 film, FrameQueueGst &pictures,
           const std::function<void(GstMessage *)> &onMessage);
    ~FilmPipelineGst();
    FilmPipelineGst(const FilmPipelineGst &) = delete;
    FilmPipelineGst &operator=(const FilmPipelineGst &) = delete;

    /// Later: the message ASYNC_DONE follows.
    [[nodiscard]] Result setState(GstState state);
    /// Later: ASYNC_DONE follows. Exact to the picture, or the key frame before.
    [[nodiscard]] Result seek(double seconds, bool exact);
    void setVolume(double volume);
    /// 0 when unknown.
    [[nodiscard]] double duration() const;
    /// Whether there is sound that can be decoded; known once it is open.
    [[nodiscard]] bool hasSound() const;
    /// Whether anything is still read, decoded or waited with.
    [[nodiscard]] bool anyTaskRuns() const;
    [[nodiscard]] bool isFromSound(GstMessage *message) const;
    [[nodiscard]] bool isFromPipeline(GstMessage *message) const;
    [[nodiscard]] GstElement *element() const { return m_playbin.get(); }

private:
    FilmPipelineGst(quint64 film, FrameQueueGst &pictures,
                    const std::function<void(GstMessage *)> &onMessage);
    [[nodiscard]] bool build(const QString &path, bool silent);
    void watchBus();

    const quint64 m_film;
    FrameQueueGst &m_pictures;
    const std::function<void(GstMessage *)> &m_onMessage;
    FormatRepairGst m_repair;
    StreamStartGst m_start;
    FilmVideoSinkGst m_videoSink;
    GstPtr<GstElement> m_playbin;
    /// Inside m_playbin, which keeps it alive.
    GstElement *m_audioSink = nullptr;
    GstPtr<GSource> m_busWatch;
};

/// The position of a pipeline in seconds, -1 when it does not know. Any thread.
[[nodiscard]] double positionOf(GstElement *pipeline);
