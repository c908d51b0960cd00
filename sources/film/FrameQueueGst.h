#pragma once

#include "sources/gst/GstPointers.h"

#include <QtGlobal>

#include <deque>
#include <mutex>
#include <optional>

/// The pictures that are due and not shown yet, in their order. It holds two, so that the beat
/// between the film's rate and the screen's costs no picture. Any thread.
class FrameQueueGst
{
public:
    /// From now on no picture of an earlier film is kept. Films are numbered upwards from 1.
    void expect(quint64 film);
    /// A paused sink hands out the same picture again when it plays; that one is left out.
    void put(quint64 film, GstPtr<GstSample> sample);
    [[nodiscard]] GstPtr<GstSample> take();
    /// Whether the place that was last sought has a picture.
    [[nodiscard]] bool anySinceClear() const;
    /// When in the film the picture is due that take() would return, in seconds; none when there is
    /// none, or it does not know.
    [[nodiscard]] std::optional<double> nextSeconds() const;
    void clear(quint64 film);

private:
    /// Called with the lock held.
    void begin(quint64 film);

    /// Guards all the members below.
    mutable std::mutex m_mutex;
    quint64 m_film = 0;
    std::deque<GstPtr<GstSample>> m_samples;
    GstPtr<GstSample> m_newest;
};
