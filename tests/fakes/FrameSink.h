#pragma once

#include "sources/ICaptureCB.h"

#include <QImage>
#include <QSize>
#include <QThread>

#include <functional>
#include <mutex>

/// Takes a source's frames and remembers the last one.
class FrameSink : public ICaptureCB
{
public:
    void imageCaptured(const QImage &image) override
    {
        const std::lock_guard lock(m_mutex);
        m_last = image.copy();
        ++m_count;
    }

    void imageCaptured(void *data, int width, int height, bool mirror, bool rgb32) override
    {
        if (onFrame)
            onFrame();
        const QImage frame(static_cast<uchar *>(data), width, height, width * 3,
                           QImage::Format_RGB888);
        const std::lock_guard lock(m_mutex);
        m_last = frame.copy();
        m_plain = m_plain && !mirror && !rgb32;
        m_thread = QThread::currentThreadId();
        ++m_count;
    }

    void startAutoRefresh() override { ++refreshStarts; }
    void stopAutoRefresh() override { ++refreshStops; }

    int count() const
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

    QImage last() const
    {
        const std::lock_guard lock(m_mutex);
        return m_last;
    }

    QSize size() const { return last().size(); }

    /// Whether every raw frame came unmirrored and packed.
    bool plain() const
    {
        const std::lock_guard lock(m_mutex);
        return m_plain;
    }

    Qt::HANDLE thread() const
    {
        const std::lock_guard lock(m_mutex);
        return m_thread;
    }

    /// Called with each raw frame, on its thread. Set it before frames come.
    std::function<void()> onFrame;
    int refreshStarts = 0;
    int refreshStops = 0;

private:
    /// Guards all the members below.
    mutable std::mutex m_mutex;
    QImage m_last;
    Qt::HANDLE m_thread = nullptr;
    int m_count = 0;
    bool m_plain = true;
};
