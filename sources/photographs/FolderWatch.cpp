#include "sources/photographs/FolderWatch.h"

#include "sources/photographs/FileNames.h"
#include "sources/photographs/PhotographList.h"
#include "sources/threads/DetachedThreads.h"

#include <array>
#include <chrono>
#include <cstring>
#include <thread>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace
{

/// Changes are reported when none came for the first time, or when the oldest has waited for the
/// second.
constexpr int QUIET_MS = 100;
constexpr auto LONGEST_DELAY = std::chrono::milliseconds(400);
constexpr int FOR_EVER = -1;
constexpr std::size_t BUFFER_BYTES = 16384;
/// A change of any of these is a change of the file's content.
constexpr std::uint32_t WRITTEN = IN_CLOSE_WRITE | IN_MOVED_TO;

class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    [[nodiscard]] int get() const { return m_descriptor; }

private:
    const int m_descriptor;
};

} // namespace

/// Held by the watch and by the thread itself.
class FolderWatch::Thread
{
public:
    Thread(const QDir &folder, const QStringList &known, Changed changed)
        : m_path(FileNames::encode(folder.absolutePath()))
        , m_known(fingerprint(known))
        , m_changed(std::move(changed))
    {
    }

    void stop()
    {
        const std::uint64_t one = 1;
        (void)!::write(m_stop.get(), &one, sizeof one);
    }

    void run()
    {
        if (inotify_add_watch(m_events.get(), m_path.constData(),
                              WRITTEN | IN_CREATE | IN_ONLYDIR) < 0)
            return;
        tellNews();
        while (wait(FOR_EVER)) {
            const auto end = std::chrono::steady_clock::now() + LONGEST_DELAY;
            QStringList written;
            bool concerned = false;
            do {
                readEvents(written, concerned);
            } while (std::chrono::steady_clock::now() < end && wait(QUIET_MS));
            if (isStopped())
                return;
            if (concerned)
                m_changed({PhotographList::list(QDir(FileNames::decode(m_path))), written});
        }
    }

private:
    /// A number, as the thread sanitizer does not see that the toolkit counts references.
    static uint fingerprint(const QStringList &names)
    {
        return qHashRange(names.begin(), names.end());
    }

    /// The pictures that came after the listing and before the first event.
    void tellNews()
    {
        const QStringList names = PhotographList::list(QDir(FileNames::decode(m_path)));
        if (fingerprint(names) != m_known && !isStopped())
            m_changed({names, {}});
    }

    /// Whether events have come within that time, and nobody has stopped the thread.
    bool wait(int milliseconds)
    {
        std::array<pollfd, 2> sources{pollfd{m_events.get(), POLLIN, 0},
                                      pollfd{m_stop.get(), POLLIN, 0}};
        return ::poll(sources.data(), sources.size(), milliseconds) > 0 &&
               sources[1].revents == 0 && (sources[0].revents & POLLIN) != 0;
    }

    bool isStopped()
    {
        pollfd stop{m_stop.get(), POLLIN, 0};
        return ::poll(&stop, 1, 0) > 0;
    }

    void readEvents(QStringList &written, bool &concerned)
    {
        const ssize_t count = ::read(m_events.get(), m_buffer.data(), m_buffer.size());
        for (ssize_t place = 0; place < count;) {
            inotify_event event{};
            std::memcpy(&event, m_buffer.data() + place, sizeof event);
            const char *name = m_buffer.data() + place + sizeof event;
            // Too many events at once: some are lost.
            concerned = concerned || (event.mask & IN_Q_OVERFLOW) != 0;
            if (event.len > 0)
                note(FileNames::decode(name), event.mask, written, concerned);
            place += static_cast<ssize_t>(sizeof event + event.len);
        }
    }

    static void note(const QString &name, std::uint32_t mask, QStringList &written, bool &concerned)
    {
        if (!PhotographList::isPictureName(name))
            return;
        concerned = true;
        if ((mask & WRITTEN) != 0 && !written.contains(name))
            written.append(name);
    }

    const QByteArray m_path;
    const uint m_known;
    const Changed m_changed;
    const Descriptor m_events{inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
    const Descriptor m_stop{eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};
    alignas(inotify_event) std::array<char, BUFFER_BYTES> m_buffer{};
};

FolderWatch::FolderWatch(const QDir &folder, const QStringList &known, Changed changed)
    : m_thread(std::make_shared<Thread>(folder, known, std::move(changed)))
{
    std::thread([thread = m_thread] {
        pthread_setname_np(pthread_self(), "FolderWatch");
        const DetachedThreads::Running detached;
        thread->run();
    }).detach();
}

FolderWatch::~FolderWatch()
{
    m_thread->stop();
}
