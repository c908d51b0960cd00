#include "app/UrgentThreads.h"

#include "sources/threads/DetachedThreads.h"
#include "sources/threads/UrgentThread.h"

#include <unistd.h>

// It has members of a name that is a macro of the toolkit's.
#pragma push_macro("signals")
#undef signals
#include <gio/gio.h>
#pragma pop_macro("signals")

namespace
{

constexpr const char *SERVICE = "org.freedesktop.RealtimeKit1";
constexpr const char *OBJECT = "/org/freedesktop/RealtimeKit1";
constexpr int ANSWER_MS = 2000;

struct GlibFree {
    void operator()(gchar *text) const { g_free(text); }
    void operator()(GVariant *value) const { g_variant_unref(value); }
    void operator()(GDBusConnection *connection) const { g_object_unref(connection); }
    void operator()(GCancellable *cancellable) const { g_object_unref(cancellable); }
};
template <class T>
using GlibPtr = std::unique_ptr<T, GlibFree>;

} // namespace

/// Outlives its owner for as long as the bus hangs.
struct UrgentThreads::Requests {
    GlibPtr<GCancellable> end{g_cancellable_new()};
    bool guiThreadHeard = false; ///< the worker's

    /// Over a connection of its own, closed again, so that nothing stays open for a request at
    /// times. The toolkit's would keep its one thread for all buses waiting for one that hangs.
    bool ask(int thread)
    {
        const GlibPtr<gchar> address(
            g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, end.get(), nullptr));
        if (!address)
            return false;
        constexpr auto AS_CLIENT =
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        const GlibPtr<GDBusConnection> bus(g_dbus_connection_new_for_address_sync(
            address.get(), AS_CLIENT, nullptr, end.get(), nullptr));
        if (!bus)
            return false;
        const GlibPtr<GVariant> answer(g_dbus_connection_call_sync(
            bus.get(), SERVICE, OBJECT, SERVICE, "MakeThreadHighPriority",
            g_variant_new("(ti)", static_cast<guint64>(thread), static_cast<gint32>(PRIORITY)),
            nullptr, G_DBUS_CALL_FLAGS_NONE, ANSWER_MS, end.get(), nullptr));
        return answer != nullptr;
    }

    int askForGuiThreadAnd(int thread)
    {
        const DetachedThreads::Running running;
        if (!guiThreadHeard)
            guiThreadHeard = ask(static_cast<int>(getpid()));
        return ask(thread) ? 0 : 1;
    }
};

UrgentThreads::UrgentThreads()
    : m_requests(std::make_shared<Requests>())
    , m_worker("UrgentThreads")
{
    UrgentThread::setListener([this](int thread) {
        // A stream that has been followed by another needs nothing any more.
        m_worker.clear();
        m_worker.post(
            [requests = m_requests, thread] { return requests->askForGuiThreadAnd(thread); });
    });
}

UrgentThreads::~UrgentThreads()
{
    UrgentThread::setListener({});
    g_cancellable_cancel(m_requests->end.get());
}
