#include "sources/photographs/FolderLister.h"

#include "sources/photographs/PhotographList.h"
#include "sources/threads/BoundedWorker.h"
#include "sources/threads/DetachedThreads.h"

using namespace std::chrono_literals;

namespace
{

constexpr auto TIMEOUT = 2000ms;
constexpr auto TIMEOUT_AGAIN = 100ms;

} // namespace

FolderLister::FolderLister() = default;

FolderLister::~FolderLister() = default;

std::optional<QStringList> FolderLister::list(const QDir &folder)
{
    const QString path = folder.absolutePath();
    if (!m_worker)
        m_worker = std::make_unique<BoundedWorker>("FolderLister");
    const auto names = std::make_shared<QStringList>();
    // The call has a copy of the folder of its own, so that what that caches stays with it.
    const auto job = [names, own = QString(path.constData(), path.size())] {
        const DetachedThreads::Running detached;
        *names = PhotographList::list(QDir(own));
        return 0;
    };
    if (m_worker->call(path == m_silentFolder ? TIMEOUT_AGAIN : TIMEOUT, job)) {
        m_silentFolder.clear();
        return *names;
    }
    // Another folder may lie on a drive that answers.
    m_worker.reset();
    m_silentFolder = path;
    return std::nullopt;
}
