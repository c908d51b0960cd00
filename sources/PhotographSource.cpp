#include "sources/PhotographSource.h"

#include "sources/ICaptureCB.h"
#include "sources/WindowServices.h"
#include "sources/photographs/PhotographList.h"
#include "sources/photographs/PictureReader.h"

#include <utility>

PhotographSource::PhotographSource(ICaptureCB *callback, MainWindow *window)
    : QObject(WindowServices::of(window).object())
    , m_callback(callback)
    , m_window(window)
{
    m_slideshow.setSingleShot(false);
    connect(&m_slideshow, SIGNAL(timeout()), this, SLOT(nextPhotograph()));
}

bool PhotographSource::setDirectory(QDir dir, QString fileName)
{
    const QStringList names = PhotographList::list(dir);
    const int found = names.indexOf(fileName);
    if (found < 0)
        return false;

    m_slideshow.stop();
    m_hasDir = true;
    m_dir = std::move(dir);
    m_openedFileName = std::move(fileName);
    m_fileNames = names;
    WindowServices::of(m_window).refreshThumbnails();
    selectPhotograph(found);
    return true;
}

int PhotographSource::photographCount() const
{
    return m_fileNames.size();
}

void PhotographSource::setPlayInterval(int ms)
{
    m_playIntervalMs = ms;
}

int PhotographSource::playInterval() const
{
    return m_playIntervalMs;
}

bool PhotographSource::readable() const
{
    return m_readable;
}

bool PhotographSource::playing() const
{
    return m_slideshow.isActive();
}

QStringList PhotographSource::fileNameList() const
{
    QStringList paths;
    paths.reserve(m_fileNames.size());
    for (const QString &name : m_fileNames)
        paths.append(m_dir.filePath(name));
    return paths;
}

void PhotographSource::selectPhotograph(int id)
{
    if (id < 0 || id >= photographCount())
        return;
    m_current = id;
    const QImage picture = PictureReader::read(m_dir.filePath(m_fileNames.at(id)));
    m_readable = !picture.isNull();
    m_callback->imageCaptured(picture);
    emit photographChanged(id);
}

void PhotographSource::pauseCapture()
{
    m_callback->stopAutoRefresh();
}

void PhotographSource::resumeCapture()
{
    if (m_hasDir && m_dir.exists())
        setDirectory(m_dir, m_openedFileName);
    m_callback->startAutoRefresh();
}

void PhotographSource::play()
{
    m_slideshow.setInterval(m_playIntervalMs);
    m_slideshow.start();
}

void PhotographSource::stop()
{
    m_slideshow.stop();
    emit playDone();
}

void PhotographSource::previous()
{
    m_slideshow.stop();
    selectPhotograph(PhotographList::previousIndex(m_current));
}

void PhotographSource::next()
{
    m_slideshow.stop();
    selectPhotograph(PhotographList::nextIndex(m_current, photographCount()));
}

void PhotographSource::nextPhotograph()
{
    const int index = PhotographList::wrappedIndex(m_current, photographCount());
    if (index < 0)
        return;
    selectPhotograph(index);
}
