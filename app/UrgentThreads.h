#pragma once

#include "sources/threads/BoundedWorker.h"

#include <memory>

/// Asks the system's RealtimeKit, which such programs are served by, to let the threads that
/// announce themselves go before what else computes, and with the first of them the GUI thread.
/// Without that service, or when it refuses, nothing changes. Nobody waits for an answer, and a bus
/// that hangs holds up a thread of its own alone. GUI thread; one at a time.
class UrgentThreads
{
public:
    UrgentThreads();
    ~UrgentThreads();
    UrgentThreads(const UrgentThreads &) = delete;
    UrgentThreads &operator=(const UrgentThreads &) = delete;

    /// The priority that is asked for, on the scale of nice.
    static constexpr int PRIORITY = -11;

private:
    struct Requests;
    std::shared_ptr<Requests> m_requests;
    BoundedWorker m_worker;
};
