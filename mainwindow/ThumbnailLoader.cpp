#include "ThumbnailLoader.h"

#include "ThumbnailLayout.h"
#include "ThumbnailWidget.h"
#include "sources/PictureReader.h"

ThumbnailLoader::ThumbnailLoader(ThumbnailWidget *widget)
    : QThread(widget)
    , m_idle(0)
{
    m_idle.release();
    setObjectName("ThumbnailLoader");
}

ThumbnailLoader::~ThumbnailLoader()
{
    stop();
}

void ThumbnailLoader::setFileNames(const QStringList &fileNames)
{
    m_fileNames = fileNames;
    m_fileNames.detach();
}

void ThumbnailLoader::start(QThread::Priority priority)
{
    if (m_pending)
        return;
    m_idle.acquire();
    m_pending = true;
    ++m_generation;
    QThread::start(priority);
}

void ThumbnailLoader::stop()
{
    if (!m_pending)
        return;
    m_stop.exchange(true);
    // The run gives the token back before its thread has ended, and a thread that has not ended
    // would swallow the next start: hence both.
    m_idle.acquire();
    wait();
    m_idle.release();
    m_stop.exchange(false);
    m_pending = false;
}

void ThumbnailLoader::run()
{
    const QSize bounds(ThumbnailLayout::BUTTON_WIDTH, ThumbnailLayout::BUTTON_HEIGHT);
    for (int i = 0; i < m_fileNames.size() && !m_stop; ++i)
        emit thumbnailLoaded(m_generation, i, PictureReader::readFitted(m_fileNames.at(i), bounds));
    // Both threads meet in the flag too: the thread sanitizer knows it, but not Qt's own means.
    m_stop.exchange(true);
    m_idle.release();
}
