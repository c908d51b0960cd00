#pragma once

#include <QString>

#include <deque>
#include <functional>
#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <memory>
#include <mutex>
#include <vector>

class QImage;

struct GstUnref {
    void operator()(GstElement *element) const { gst_object_unref(element); }
    void operator()(GstSample *sample) const { gst_sample_unref(sample); }
    void operator()(GstMessage *message) const { gst_message_unref(message); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    void operator()(GSource *source) const { g_source_unref(source); }
};
template <class T>
using GstPtr = std::unique_ptr<T, GstUnref>;

/// The pictures that are due and not shown yet, in their order. Two, so that the beat between the
/// film's rate and the screen's costs no picture. Any thread.
class DuePictures
{
public:
    /// From now on nothing but pictures of that film is kept.
    void expect(quint64 film);
    /// A paused sink hands out the same picture again when it plays; that one is left out.
    void put(quint64 film, GstPtr<GstSample> sample);
    [[nodiscard]] GstPtr<GstSample> take();
    /// Whether the place that was last sought has a picture.
    [[nodiscard]] bool anySinceClear() const;
    void clear(quint64 film);

private:
    /// Guards all the members below.
    mutable std::mutex m_mutex;
    quint64 m_film = 0;
    std::deque<GstPtr<GstSample>> m_samples;
    GstPtr<GstSample> m_newest;
};

/// One film in one GStreamer pipeline: pictures go to a DuePictures, sound to the desktop or, when
/// silent, nowhere. Used by FilmPlayerGst.cpp alone, on its thread; only seconds() may be called
/// from elsewhere.
class FilmPipelineGst
{
public:
    /// Initialises the library and loads the code that most films need, once. May take a while.
    static void load();

    enum class Result { Failed, Done, Later };

    /// Null when it is no regular file or an element is missing. Messages go to `onMessage`, which
    /// outlives the pipeline, on the thread-default context.
    [[nodiscard]] static std::unique_ptr<FilmPipelineGst>
    create(const QString &path, bool silent, quint64 film, DuePictures &pictures,
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
    [[nodiscard]] bool isFromSound(GstMessage *message) const;
    [[nodiscard]] bool isFromPipeline(GstMessage *message) const;
    [[nodiscard]] GstElement *element() const { return m_playbin.get(); }

private:
    FilmPipelineGst(quint64 film, DuePictures &pictures,
                    const std::function<void(GstMessage *)> &onMessage);
    [[nodiscard]] bool build(const QString &path, bool silent);
    [[nodiscard]] GstElement *buildVideoSink();
    void watchBus();
    static GstFlowReturn onPreroll(GstAppSink *sink, gpointer pipeline);
    static GstFlowReturn onSample(GstAppSink *sink, gpointer pipeline);
    static GstPadProbeReturn onFlush(GstPad *pad, GstPadProbeInfo *info, gpointer pipeline);
    GstFlowReturn keep(GstSample *sample);

    const quint64 m_film;
    DuePictures &m_pictures;
    const std::function<void(GstMessage *)> &m_onMessage;
    GstPtr<GstElement> m_playbin;
    /// Inside m_playbin, which keeps it alive.
    GstElement *m_audioSink = nullptr;
    GstPtr<GSource> m_busWatch;
};

/// The position of a pipeline in seconds, -1 when it does not know. Any thread.
[[nodiscard]] double positionOf(GstElement *pipeline);

/// Calls `show` with the sample's picture as QImage::Format_RGB888, valid during the call. It wraps
/// the decoder's memory, or `converted`, which is reused from call to call.
[[nodiscard]] bool showSample(GstSample *sample, std::vector<uchar> &converted,
                              const std::function<void(const QImage &picture)> &show);
