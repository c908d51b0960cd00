#include "sources/threads/PostedCalls.h"

#include "sources/threads/CallbackGate.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

PostedCalls::Post::Post(std::shared_ptr<CallbackGate> gate, PostedCalls *calls)
    : m_gate(std::move(gate))
    , m_calls(calls)
{
}

void PostedCalls::Post::operator()(Call call) const
{
    m_gate->pass([this, &call] {
        {
            const std::lock_guard lock(m_calls->m_mutex);
            m_calls->m_calls.push_back(std::move(call));
        }
        QCoreApplication::postEvent(m_calls, new QEvent(QEvent::User));
    });
}

PostedCalls::PostedCalls()
    : m_gate(std::make_shared<CallbackGate>())
{
}

PostedCalls::~PostedCalls()
{
    m_gate->close();
}

PostedCalls::Post PostedCalls::post()
{
    return {m_gate, this};
}

void PostedCalls::customEvent(QEvent *)
{
    Call call;
    {
        const std::lock_guard lock(m_mutex);
        call = std::move(m_calls.front());
        m_calls.pop_front();
    }
    call();
}
