#include "sources/film/LoopTimerGst.h"

#include <utility>

LoopTimerGst::LoopTimerGst(std::function<void()> call)
    : m_call(std::move(call))
{
}

LoopTimerGst::~LoopTimerGst()
{
    stop();
}

void LoopTimerGst::start(GMainContext *context, std::chrono::milliseconds interval)
{
    stop();
    m_source.reset(g_timeout_source_new(static_cast<guint>(interval.count())));
    const auto onTimeout = +[](gpointer timer) -> gboolean {
        static_cast<LoopTimerGst *>(timer)->m_call();
        return G_SOURCE_CONTINUE;
    };
    g_source_set_callback(m_source.get(), onTimeout, this, nullptr);
    g_source_attach(m_source.get(), context);
}

void LoopTimerGst::stop()
{
    if (m_source)
        g_source_destroy(m_source.get());
    m_source.reset();
}
