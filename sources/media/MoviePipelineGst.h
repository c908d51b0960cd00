#pragma once

#include "sources/media/GstPointers.h"
#include "sources/media/MovieWriter.h"

#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include <sys/stat.h>

#include <QByteArray>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

/// The pipeline with the thread that watches it. Shared by the writer and that thread, which the
/// writer leaves behind when the disk does not answer.
class MoviePipeline
{
public:
    /// Opens the file; opened() tells whether that went well, and a failure is reported.
    MoviePipeline(const MovieWriter::Settings &settings, MovieWriter::FailureHandler failed);

    GstAppSrc *pictures() const { return GST_APP_SRC(m_pictures.get()); }
    GstAppSrc *sound() const { return GST_APP_SRC(m_sound.get()); }

    bool opened() const { return m_opened; }

    /// Ends the streams; without a picture there is nothing to end and the file goes away. Any
    /// thread.
    void end();

    /// Runs until the file is closed. Thread "MovieWatch".
    void watch();

    bool waitUntilClosed(std::chrono::seconds patience);

    /// A thread that is left behind reports nothing any more.
    void forgetHandler();

    /// The first belongs to any thread, the second is set by the writer.
    std::atomic<MovieWriter::Status> status{MovieWriter::Status::Waiting};
    std::atomic<bool> hasPictures{false};

private:
    void open(const MovieWriter::Settings &settings);
    bool ended();
    void checkSurroundings();
    bool fileInPlace() const;
    void fail(const QString &text);
    static QString textOf(GstMessage *message);

    /// In the file system's encoding.
    const QByteArray m_fileName;
    GstPtr<GstElement> m_pipeline;
    GstPtr<GstElement> m_pictures;
    GstPtr<GstElement> m_sound;
    GstPtr<GstElement> m_mux;
    GstPtr<GstBus> m_bus;
    bool m_opened = false;
    /// What was opened under that name.
    struct stat m_file {
    };
    std::atomic<bool> m_ending{false};
    std::atomic<bool> m_abandoned{false};

    /// Guards m_failed.
    std::mutex m_handlerMutex;
    MovieWriter::FailureHandler m_failed;

    /// Guards m_closed.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_closed = false;
};
