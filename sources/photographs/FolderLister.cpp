#include "sources/photographs/FolderLister.h"

#include "sources/photographs/PhotographList.h"
#include "sources/threads/BoundedWorker.h"
#include "sources/threads/DetachedThreads.h"

#include <QFileInfo>

using namespace std::chrono_literals;

namespace
{

constexpr auto TIMEOUT = 2000ms;
constexpr auto TIMEOUT_AGAIN = 100ms;

/// With its characters in a memory of its own: the toolkit's counting of references is invisible to
/// the thread sanitizer.
QString unshared(const QString &text)
{
    return QString(text.constData(), text.size());
}

} // namespace

FolderLister::FolderLister() = default;

FolderLister::~FolderLister() = default;

std::optional<FolderLister::Listing> FolderLister::list(const QDir &folder, const QString &file,
                                                        bool isSilent)
{
    const QString path = folder.absolutePath();
    if (!m_worker)
        m_worker = std::make_unique<BoundedWorker>("FolderLister");
    const auto listing = std::make_shared<Listing>();
    // QDir caches what it has read, so the call works on an object of its own.
    const auto job = [listing, own = unshared(path), name = unshared(file)] {
        const DetachedThreads::Running detached;
        listing->names = PhotographList::list(QDir(own));
        listing->hasFile =
            listing->names.contains(name) || QFileInfo::exists(QDir(own).filePath(name));
        return 0;
    };
    const auto timeout = isSilent || path == m_silentFolder ? TIMEOUT_AGAIN : TIMEOUT;
    if (m_worker->call(timeout, job)) {
        m_silentFolder.clear();
        return *listing;
    }
    // Another folder may lie on a drive that answers.
    m_worker.reset();
    m_silentFolder = path;
    return std::nullopt;
}
