#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "canvas/SnapshotFile.h"
#include "diagnostics/TerminalLines.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMetaObject>

#include <cerrno>

void ImageCanvas::snapshot()
{
    const std::shared_ptr<OutputFolder> folder = OutputFolder::of(snapshotFolder);
    const OutputFolder::State state = folder->state();
    if (state == OutputFolder::State::Missing)
        return;
    if (state != OutputFolder::State::Exists)
        reportSnapshotFailure(snapshotFolder, qt_error_string(ETIMEDOUT));
    const std::lock_guard<std::mutex> locker(m_lock);
    m_armedFolder = folder;
    m_snapshotClock.arm({snapshotMode, snapshotInterval, seriesLimit}, m_clock.elapsed());
}

void ImageCanvas::stopSnapshot()
{
    const std::lock_guard<std::mutex> locker(m_lock);
    m_snapshotClock.disarm();
}

bool ImageCanvas::seriesArmed() const
{
    const std::lock_guard<std::mutex> locker(m_lock);
    return m_snapshotClock.isSeriesArmed();
}

void ImageCanvas::take(const Shot &shot)
{
    if (!shot.picture)
        return;
    const OutputFolder::State state = shot.folder->state();
    if (state == OutputFolder::State::TimedOut)
        reportSnapshotFailure(shot.folder->path(), qt_error_string(ETIMEDOUT));
    // A shot whose folder is away, or does not answer, stays armed.
    if (state != OutputFolder::State::Exists)
        return;
    {
        const std::lock_guard<std::mutex> locker(m_lock);
        if (shot.folder != m_armedFolder || !m_snapshotClock.takePicture(m_clock.elapsed()))
            return;
    }
    save(shot);
}

void ImageCanvas::save(const Shot &shot)
{
    const QString path = SnapshotFile::path(shot.folder->path(), QDateTime::currentDateTime());
    const auto failure = shot.folder->write(path, SnapshotFile::encoded(frameImage(shot.picture)));
    if (failure)
        reportSnapshotFailure(path, *failure);
    // A failed write is shown like a good one.
    if (onGuiThread())
        showSnapshotTaken();
    else
        QMetaObject::invokeMethod(this, "showSnapshotTaken", Qt::QueuedConnection);
}

void ImageCanvas::reportSnapshotFailure(const QString &path, const QString &reason)
{
    qWarning("%s: %s", qPrintable(path), qPrintable(reason));
    TerminalLines::tell(TerminalLines::Line::SnapshotNotWritten, {path, reason},
                        QFileInfo(path).path() + reason);
    if (onGuiThread())
        keepSnapshotFailure(path, reason);
    else
        QMetaObject::invokeMethod(this, "keepSnapshotFailure", Qt::QueuedConnection,
                                  Q_ARG(QString, path), Q_ARG(QString, reason));
}

void ImageCanvas::keepSnapshotFailure(const QString &path, const QString &reason)
{
    m_snapshotFailure = SnapshotFailure{QDateTime::currentDateTime(), path, reason};
    emit snapshotFailed(path, reason);
}

void ImageCanvas::showSnapshotTaken()
{
    if (m_osd)
        m_osd->osdSnapshot();
}
