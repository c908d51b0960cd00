#pragma once

#include "sources/film/FilmIndex.h"
#include "sources/film/FilmVideoSinkGst.h"
#include "sources/film/FormatRepairGst.h"
#include "sources/film/FrameQueueGst.h"
#include "sources/film/KeyFrameSeekGst.h"
#include "sources/film/PictureTimesGst.h"
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

    struct File {
        const QString &path;
        const FilmIndex &index;
    };

    /// Null when an element is missing. Messages go to `onMessage`, which
    /// outlives the pipeline, on the thread-default context.
    [[nodiscard]] static std::unique_ptr<FilmPipelineGst>
    create(const File &file, bool silent, quint64 film, FrameQueueGst &pictures,
           const std::function<void(GstMessage *)> &onMessage);
    ~FilmPipelineGst();
    FilmPipelineGst(const FilmPipelineGst &) = delete;
    FilmPipelineGst &operator=(const FilmPipelineGst &) = delete;

    /// Later: the message ASYNC_DONE follows.
    [[nodiscard]] Result setState(GstState state);
    /// Goes to a place; its picture shows, or the nearest where it has none. Later: ASYNC_DONE
    /// follows, and then continueSeek() is to be called.
    [[nodiscard]] Result seek(double seconds);
    /// Done when a picture waits in the queue, Failed when none was found; Later as for seek().
    [[nodiscard]] Result continueSeek();
    /// Whether the message was sent before the seek under way.
    [[nodiscard]] bool isBeforeSeek(GstMessage *message) const;
    /// Whether the film has come to a gap before any picture.
    [[nodiscard]] bool beginsLate() const { return m_times.onlyGap(); }
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
    /// Where no picture is, a seek fetches the nearest, or the key frame before if that one cannot
    /// be decoded, and goes to its place once more.
    enum class SeekStep { ToPlace, ToNearest, ToKeyFrame, ToPlaceAgain };

    FilmPipelineGst(bool soughtFromStart, quint64 film, FrameQueueGst &pictures,
                    const std::function<void(GstMessage *)> &onMessage);
    [[nodiscard]] bool build(const File &file, bool silent);
    void watchBus();
    [[nodiscard]] Result sendSeek(SeekStep step, double seconds);

    const quint64 m_film;
    FrameQueueGst &m_pictures;
    const std::function<void(GstMessage *)> &m_onMessage;
    FormatRepairGst m_repair;
    StreamStartGst m_transportStream;
    StreamStartGst m_programStream;
    KeyFrameSeekGst m_keyFrames;
    PictureTimesGst m_times;
    FilmVideoSinkGst m_videoSink;
    GstPtr<GstElement> m_playbin;
    /// Inside m_playbin, which keeps it alive.
    GstElement *m_audioSink = nullptr;
    GstPtr<GSource> m_busWatch;
    SeekStep m_seekStep = SeekStep::ToPlace;
    /// Where the seek goes, in seconds.
    double m_seekPlace = 0;
    /// The number of its step under way, as the library counts.
    guint32 m_seekNumber = 0;
    /// The picture that was fetched from elsewhere.
    GstPtr<GstSample> m_nearest;
};

/// The position of a pipeline in seconds, -1 when it does not know. Any thread.
[[nodiscard]] double positionOf(GstElement *pipeline);
