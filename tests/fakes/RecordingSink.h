#pragma once

#include "sources/ICaptureCB.h"

#include <QImage>
#include <QStringList>
#include <QThread>
#include <QVector>

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

/// Receives pictures as a canvas does, from whatever thread, and remembers what came.
class RecordingSink : public ICaptureCB
{
public:
    void imageCaptured(const QImage &image) override
    {
        const std::lock_guard lock(m_mutex);
        remember(image);
        if (readNumber)
            m_numbers.push_back(readNumber(image));
    }

    void imageCaptured(void *data, int width, int height, bool mirror, bool rgb32) override
    {
        if (onRawFrame)
            onRawFrame();
        const std::lock_guard lock(m_mutex);
        remember(
            QImage(static_cast<uchar *>(data), width, height, width * 3, QImage::Format_RGB888));
        m_plain = m_plain && !mirror && !rgb32;
        m_inLentMemory += data == m_lent;
        ++m_rawFrames;
    }

    std::shared_ptr<std::uint8_t> memoryForFrame(int width, int height) override
    {
        if (!lend)
            return nullptr;
        std::shared_ptr<std::uint8_t> memory = lend(width, height);
        const std::lock_guard lock(m_mutex);
        m_lent = memory.get();
        return memory;
    }

    void startAutoRefresh() override { refresh("start"); }
    void stopAutoRefresh() override { refresh("stop"); }

    /// Of pictures and raw frames.
    int count() const { return locked(m_count); }
    int rawFrames() const { return locked(m_rawFrames); }
    /// Raw frames that came in the memory that was lent for them.
    int inLentMemory() const { return locked(m_inLentMemory); }
    /// A copy of the newest picture.
    QImage last() const { return locked(m_last); }
    QSize size() const { return last().size(); }
    int stride() const { return locked(m_stride); }
    /// Whether every raw frame came unmirrored and packed.
    bool plain() const { return locked(m_plain); }
    /// That of the newest picture.
    QThread *thread() const { return locked(m_thread); }
    bool anyOnGuiThread() const { return locked(m_onGuiThread); }
    /// What readNumber() said of each picture, in their order.
    QVector<int> numbers() const
    {
        const std::lock_guard lock(m_mutex);
        return {m_numbers.begin(), m_numbers.end()};
    }
    int lastNumber() const
    {
        const std::lock_guard lock(m_mutex);
        return m_numbers.empty() ? -1 : m_numbers.back();
    }
    void forget()
    {
        const std::lock_guard lock(m_mutex);
        m_count = 0;
        m_last = QImage();
        m_numbers.clear();
    }

    bool refreshing() const { return m_refreshing; }
    /// The refresh operations since the last call; GUI thread, as they are.
    QStringList takeRefreshes() { return std::exchange(m_refreshes, {}); }
    bool refreshedElsewhere() const { return m_refreshedElsewhere; }

    /// Set it before pictures come.
    std::function<int(const QImage &)> readNumber;
    /// Lends memory for each raw frame, on its thread; without it, none is lent. Set it before
    /// frames come.
    std::function<std::shared_ptr<std::uint8_t>(int width, int height)> lend;
    /// Called before each raw frame, on its thread. Set it before frames come.
    std::function<void()> onRawFrame;

private:
    template <class T>
    T locked(const T &value) const
    {
        const std::lock_guard lock(m_mutex);
        return value;
    }

    /// Called with the lock held.
    void remember(const QImage &image)
    {
        m_last = image.copy();
        m_stride = image.bytesPerLine();
        ++m_count;
        m_thread = QThread::currentThread();
        m_onGuiThread = m_onGuiThread || m_thread == m_gui;
    }

    void refresh(const char *operation)
    {
        m_refreshing = qstrcmp(operation, "start") == 0;
        m_refreshedElsewhere = m_refreshedElsewhere || QThread::currentThread() != m_gui;
        m_refreshes.append(QString::fromLatin1(operation));
    }

    QThread *const m_gui = QThread::currentThread();
    bool m_refreshing = false;
    bool m_refreshedElsewhere = false;
    QStringList m_refreshes;

    /// Guards all the members below.
    mutable std::mutex m_mutex;
    QImage m_last;
    QThread *m_thread = nullptr;
    // No implicit sharing between the threads.
    std::vector<int> m_numbers;
    int m_count = 0;
    int m_rawFrames = 0;
    const void *m_lent = nullptr;
    int m_inLentMemory = 0;
    int m_stride = 0;
    bool m_plain = true;
    bool m_onGuiThread = false;
};
