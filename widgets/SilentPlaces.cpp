#include "widgets/SilentPlaces.h"

#include "sources/threads/BoundedWorker.h"
#include "sources/threads/DetachedThreads.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <atomic>

using namespace std::chrono_literals;

namespace
{

constexpr auto TIMEOUT = 1000ms;

/// What the worker asks: a path's folders from the outermost one on, and the path itself.
struct Walk {
    explicit Walk(const QString &path)
    {
        for (int end = path.indexOf('/', 1); end > 0; end = path.indexOf('/', end + 1))
            steps << path.left(end);
        // In a memory of its own, as the worker may outlive the caller's.
        steps << QString(path.constData(), path.size());
    }

    QStringList steps;
    std::atomic<int> reached{0};
};

} // namespace

struct SilentPlaces::Question {
    QString place;
    BoundedWorker::Ticket ticket;
    std::unique_ptr<BoundedWorker> worker;
};

SilentPlaces::SilentPlaces() = default;

SilentPlaces::~SilentPlaces() = default;

bool SilentPlaces::answers(const QString &path)
{
    std::unique_ptr<BoundedWorker> worker;
    {
        const std::lock_guard lock(m_mutex);
        if (isInSilentPlace(path))
            return false;
        worker = takeWorker();
    }
    const auto walk = std::make_shared<Walk>(path);
    const auto ticket = worker->post([walk] {
        const DetachedThreads::Running detached;
        for (; walk->reached < walk->steps.size(); ++walk->reached) {
            // What it is: whether it exists may be answered from what the system remembers.
            if (QFileInfo step(walk->steps.at(walk->reached)); !step.isDir() && !step.exists())
                break;
        }
        return 0;
    });
    const bool isAnswered = ticket.wait(TIMEOUT).has_value();
    const std::lock_guard lock(m_mutex);
    if (isAnswered)
        m_workers.push_back(std::move(worker));
    else
        m_unanswered.push_back({walk->steps.value(walk->reached, path), ticket, std::move(worker)});
    return isAnswered;
}

bool SilentPlaces::isInSilentPlace(const QString &path)
{
    m_unanswered.erase(
        std::remove_if(m_unanswered.begin(), m_unanswered.end(),
                       [](const Question &question) { return !question.ticket.open(); }),
        m_unanswered.end());
    return std::any_of(m_unanswered.begin(), m_unanswered.end(), [&path](const Question &question) {
        return path.startsWith(question.place) &&
               (path.size() == question.place.size() || path[question.place.size()] == '/');
    });
}

std::unique_ptr<BoundedWorker> SilentPlaces::takeWorker()
{
    if (m_workers.empty())
        return std::make_unique<BoundedWorker>("SilentPlaces");
    std::unique_ptr<BoundedWorker> worker = std::move(m_workers.back());
    m_workers.pop_back();
    return worker;
}
