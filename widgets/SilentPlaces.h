#pragma once

#include <QString>

#include <memory>
#include <mutex>
#include <vector>

class BoundedWorker;

/// Knows which files and folders lie on a drive that does not answer, as a share whose server has
/// gone. Any thread.
class SilentPlaces
{
public:
    SilentPlaces();
    ~SilentPlaces();
    SilentPlaces(const SilentPlaces &) = delete;
    SilentPlaces &operator=(const SilentPlaces &) = delete;

    /// Whether the system says of that absolute path what it is, or that there is none. A place
    /// that stays silent is waited for a second, what lies in it afterwards not at all until it
    /// answers.
    [[nodiscard]] bool answers(const QString &path);

private:
    struct Question;

    /// Whether the path lies in a place that is known to be silent; with m_mutex held.
    [[nodiscard]] bool isInSilentPlace(const QString &path);
    /// With m_mutex held.
    [[nodiscard]] std::unique_ptr<BoundedWorker> takeWorker();

    /// Guards all the others.
    std::mutex m_mutex;
    /// Those that are still on their way.
    std::vector<Question> m_unanswered;
    /// Workers with nothing to do.
    std::vector<std::unique_ptr<BoundedWorker>> m_workers;
};
