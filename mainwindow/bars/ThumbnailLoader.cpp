#include "mainwindow/bars/ThumbnailLoader.h"

#include "mainwindow/bars/ThumbnailLayout.h"
#include "sources/photographs/ThumbnailStore.h"
#include "sources/threads/DetachedThreads.h"

#include <utility>

namespace
{

/// A copy of the texts that shares no memory: the thread sanitizer does not see Qt's own reference
/// counting.
QStringList unshared(const QStringList &texts)
{
    QStringList copies;
    copies.reserve(texts.size());
    for (const QString &text : texts)
        copies.append(QString(text.constData(), text.size()));
    return copies;
}

} // namespace

ThumbnailLoader::ThumbnailLoader(int generation, const QStringList &fileNames, qreal pixelRatio,
                                 QObject *parent)
    : ThumbnailLoader(generation, fileNames, pixelRatio, parent, std::make_shared<ThumbnailStore>())
{
}

ThumbnailLoader::ThumbnailLoader(int generation, const QStringList &fileNames, qreal pixelRatio,
                                 QObject *parent, std::shared_ptr<ThumbnailStore> store)
    : QThread(parent)
    , m_store(std::move(store))
    , m_fileNames(unshared(fileNames))
    , m_pixelRatio(pixelRatio)
    , m_generation(generation)
{
    setObjectName("ThumbnailLoader");
}

ThumbnailLoader::~ThumbnailLoader()
{
    // The exchange is for the thread sanitizer, which does not see Qt's own means of waiting.
    m_stop.exchange(true);
    wait();
    m_stop.exchange(true);
}

void ThumbnailLoader::start(QThread::Priority priority)
{
    QThread::start(priority);
}

void ThumbnailLoader::stop()
{
    m_stop.exchange(true);
}

void ThumbnailLoader::retire(ThumbnailLoader *loader)
{
    loader->stop();
    loader->disconnect();
    loader->setParent(nullptr);
    connect(loader, &QThread::finished, loader, &QObject::deleteLater);
    // The signal has already been sent, or will never be sent.
    if (!loader->isRunning())
        loader->deleteLater();
}

void ThumbnailLoader::run()
{
    const DetachedThreads::Running detached;
    const QSize place(ThumbnailLayout::BUTTON_WIDTH, ThumbnailLayout::BUTTON_HEIGHT);
    const QSize size = place * m_pixelRatio;
    QVector<int> embedded;
    for (int i = 0; i < m_fileNames.size() && !m_stop; ++i) {
        const ThumbnailStore::Thumbnail quick = m_store->quickThumbnail(m_fileNames.at(i), size);
        tell(i, quick.image);
        if (quick.isEmbedded)
            embedded.append(i);
    }
    for (int i = 0; i < embedded.size() && !m_stop; ++i)
        tell(embedded.at(i), m_store->thumbnail(m_fileNames.at(embedded.at(i)), size));
    m_stop.exchange(true);
}

void ThumbnailLoader::tell(int index, QImage image)
{
    image.setDevicePixelRatio(m_pixelRatio);
    emit thumbnailLoaded(m_generation, index, image);
}
