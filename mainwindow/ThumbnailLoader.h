#pragma once

#include <QImage>
#include <QSemaphore>
#include <QStringList>
#include <QThread>

#include <atomic>

class ThumbnailWidget;

/// The thread that reads the pictures of the strip, from left to right, one run for each folder.
///
/// A run works on its own copy of the file names and posts its results with the run's number; it
/// touches no widget. All public functions belong to the GUI thread.
class ThumbnailLoader : public QThread
{
    Q_OBJECT

public:
    explicit ThumbnailLoader(ThumbnailWidget *widget);
    ~ThumbnailLoader() override;

    /// What the next run reads. Only between stop() and start().
    void setFileNames(const QStringList &fileNames);
    /// Starts a run; a no-op while one is pending.
    void start(QThread::Priority priority);
    /// Ends a pending run and waits until its thread has ended, one picture's decoding at most.
    void stop();
    /// The number of the newest run, counted from 1.
    [[nodiscard]] int generation() const { return m_generation; }

signals:
    /// Sent by the worker thread; a picture that cannot be read is null.
    void thumbnailLoaded(int generation, int index, const QImage &image);

protected:
    void run() override;

private:
    std::atomic<bool> m_stop{false};
    /// Holds its one token while no run is in progress.
    QSemaphore m_idle;
    bool m_pending = false;
    /// Written only while no run is in progress.
    QStringList m_fileNames;
    int m_generation = 0;
};
