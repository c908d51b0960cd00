#pragma once

#include "sources/gst/GstPointers.h"

#include <chrono>
#include <functional>
#include <gst/gst.h>

/// Calls a function repeatedly on the thread that runs a main context. Belongs to that thread.
class LoopTimerGst
{
public:
    explicit LoopTimerGst(std::function<void()> call);
    ~LoopTimerGst();
    LoopTimerGst(const LoopTimerGst &) = delete;
    LoopTimerGst &operator=(const LoopTimerGst &) = delete;

    /// Begins again.
    void start(GMainContext *context, std::chrono::milliseconds interval);
    /// May be called from the function.
    void stop();

private:
    const std::function<void()> m_call;
    GstPtr<GSource> m_source;
};
