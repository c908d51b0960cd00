#pragma once

#include <functional>

/// Threads that a moving picture waits for, which should go before what else computes on a busy
/// machine. Any thread.
namespace UrgentThread
{

/// Says that the calling thread is one.
void announce();

/// Is called with the system's number of each thread that announces itself from now on, on that
/// thread; it must not wait for anything. None when empty.
void setListener(std::function<void(int thread)> listener);

} // namespace UrgentThread
