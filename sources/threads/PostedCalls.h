#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

class CallbackGate;

/// Calls that other threads leave for the thread of this object, where they are made one by one, in
/// their order, each from the event loop. None is made any more once the object is gone.
///
/// A lock of its own guards what is handed over. So does the toolkit's queue of events, but not for
/// the eyes of a sanitizer.
class PostedCalls : public QObject
{
public:
    using Call = std::function<void()>;

    /// What another thread leaves its calls with, for as long as it likes.
    class Post
    {
    public:
        /// Any thread. Never waits for the call, and leaves it out when the object is gone.
        void operator()(Call call) const;

    private:
        friend class PostedCalls;
        Post(std::shared_ptr<CallbackGate> gate, PostedCalls *calls);

        std::shared_ptr<CallbackGate> m_gate;
        PostedCalls *m_calls;
    };

    PostedCalls();
    ~PostedCalls() override;
    PostedCalls(const PostedCalls &) = delete;
    PostedCalls &operator=(const PostedCalls &) = delete;

    [[nodiscard]] Post post();

protected:
    void customEvent(QEvent *event) override;

private:
    const std::shared_ptr<CallbackGate> m_gate;
    std::mutex m_mutex; ///< guards the member below
    std::deque<Call> m_calls;
};
