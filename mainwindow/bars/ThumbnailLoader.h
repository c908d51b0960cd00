#pragma once

#include <QImage>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <memory>

class ThumbnailStore;

/// The thread that reads the pictures of the strip, from left to right. One loader reads one folder
/// once; the next folder gets a loader of its own, so that nobody waits for a slow disk. Where a
/// camera has put a small picture into its file, the strip shows that first: when all thumbnails
/// are there, the pictures themselves take the places of those, again from left to right.
///
/// It works on its own copy of the file names and posts its results with its number; it touches no
/// widget. All public functions belong to the GUI thread.
class ThumbnailLoader : public QThread
{
    Q_OBJECT

public:
    /// `generation` counts the folders, so that the results of an older one can be told apart. A
    /// thumbnail has `pixelRatio` squared times as many pixels as its place in the layout.
    /// Thumbnails that were made before are taken from `store`, and new ones are kept there.
    ThumbnailLoader(int generation, const QStringList &fileNames, qreal pixelRatio, QObject *parent,
                    std::shared_ptr<ThumbnailStore> store);
    ThumbnailLoader(int generation, const QStringList &fileNames, qreal pixelRatio,
                    QObject *parent);
    /// Waits for the thread to end; an owner that must not wait calls retire().
    ~ThumbnailLoader() override;

    [[nodiscard]] int generation() const { return m_generation; }
    void start(QThread::Priority priority);
    /// Ends the run after the picture that is being read. Does not wait.
    void stop();
    /// Gives up a loader: it loses its parent, ends its run, reports nothing any more and deletes
    /// itself when its thread has ended. Nobody waits for that.
    static void retire(ThumbnailLoader *loader);

signals:
    /// Sent by the worker thread; a picture that cannot be read is null.
    void thumbnailLoaded(int generation, int index, const QImage &image);

protected:
    void run() override;

private:
    void tell(int index, QImage image);

    std::atomic<bool> m_stop{false};
    const std::shared_ptr<ThumbnailStore> m_store;
    const QStringList m_fileNames;
    const qreal m_pixelRatio;
    const int m_generation;
};
